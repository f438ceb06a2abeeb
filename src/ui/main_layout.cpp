// Main layout: the table of groups, rows and fields.
#include "ui/main_layout.h"

namespace tellaxis::ui {

namespace {

using F = MainForm;

constexpr const char* portHelp = "Porta del computer a cui è collegata la periferica";
constexpr const char* lineHelp =
    "Velocità, parità (N, O, E), bit di dati e bit di stop della linea, per esempio 9600,N,8,1";

constexpr Row generale[] = {
    {{{.control = &F::chkOrbis,
       .label = "Settaggi come Orbis51",
       .help = "A ogni avvio riprende da Orbis51 le impostazioni di misuratore fiscale, display, FTP e connessione"}}},
    {{{.control = &F::Orbis51Dir,
       .label = "Cartella di Orbis51",
       .help = "Cartella del punto cassa Orbis51, senza barra finale; contiene il file _Local.ini",
       .browse = Browse::folder}}},
    {{{.control = &F::Postazione,
       .label = "Postazione",
       .help = "Ruolo di questo computer nelle operazioni pianificate: CLIENT o SERVER. Non viene salvato",
       .columns = 12}}},
};

constexpr Row misuratoreFiscale[] = {
    {{{.control = &F::MF_Active,
       .label = "Attivo",
       .help = "Gli scontrini della cartella Orbis vengono passati al misuratore fiscale"},
      {.control = &F::MF_Buffer,
       .label = "Usa il buffer",
       .help = "Solo FPMate: i lavori passano dalla cartella _Buffer di Orbis51"},
      {.control = &F::MF_chkLog,
       .label = "Registra nel log",
       .help = "Scrive in c:\\Tellaxis\\MF.log gli scontrini senza risposta e, con CASIO/DITRON, ogni passaggio al "
               "driver. Si cambia solo nel file delle impostazioni (MF_ChkLog)"}}},
    {{{.control = &F::MF_Type,
       .label = "Modello",
       .help = "Modello del misuratore fiscale, con il codice di Orbis51"}}},
    {{{.control = &F::MF_Protocol,
       .label = "Driver",
       .help = "Tipo di driver a cui passare gli scontrini; deve corrispondere al modello"}}},
    {{{.control = &F::MF_File,
       .label = "File per il driver",
       .help = "File su cui viene copiato ogni scontrino perché il driver lo legga; se manca, nessuno scontrino parte",
       .browse = Browse::file}}},
    {{{.control = &F::MF_FileOutput,
       .label = "File di risposta",
       .help = "File che il driver scrive quando ha finito; la sua comparsa conferma lo scontrino",
       .browse = Browse::file}}},
    {{{.control = &F::MF_Driver,
       .label = "Programma driver",
       .help = "Programma avviato per ogni scontrino. Si cambia solo nel file delle impostazioni (MF_Driver)"}}},
    {{{.control = &F::MF_Com, .label = "Porta COM", .help = portHelp, .columns = 5},
      {.control = &F::MF_Param, .label = "Parametri", .help = lineHelp, .columns = 11},
      {.control = &F::MF_Delay,
       .label = "Ritardo (cs)",
       .help = "Attesa prima di ogni controllo della risposta, in centesimi di secondo",
       .columns = 5}}},
};

constexpr Row connessione[] = {
    {{{.key = "FTP_Indirizzo",
       .label = "Server FTP",
       .help = "Server dei trasferimenti FTP, dal file delle impostazioni (FTP_Indirizzo)"},
      {.key = "FTP_User",
       .label = "Utente",
       .help = "Utente dei trasferimenti FTP, dal file delle impostazioni (FTP_User)",
       .columns = 12,
       .spoken = "Utente FTP"}}},
    {{{.key = "WEB_Connection",
       .label = "Accesso remoto",
       .help = "Nome della connessione telefonica, dal file delle impostazioni (WEB_Connection)"},
      {.key = "WEB_User",
       .label = "Utente",
       .help = "Utente della connessione telefonica, dal file delle impostazioni (WEB_User)",
       .columns = 12,
       .spoken = "Utente dell'accesso remoto"}}},
};

constexpr Row display[] = {
    {{{.control = &F::DLY_Active,
       .label = "Attivo",
       .help = "I messaggi del file indicato vengono mandati al display del cliente"},
      {.control = &F::DLY_Delay,
       .label = "Ritardo (cs)",
       .help = "Pausa dopo ogni messaggio, in centesimi di secondo. Si cambia solo nel file delle impostazioni "
               "(Display_Delay)",
       .columns = 5}}},
    {{{.control = &F::DLY_Type, .label = "Famiglia", .help = "Famiglia del display del cliente"}}},
    {{{.control = &F::DLY_File,
       .label = "File dei messaggi",
       .help = "File in cui Orbis51 scrive il messaggio per il display",
       .browse = Browse::file}}},
    {{{.control = &F::DLY_com, .label = "Porta COM", .help = portHelp, .columns = 5},
      {.control = &F::DLY_Param, .label = "Parametri", .help = lineHelp, .columns = 11}}},
};

constexpr Row ricevutaFiscale[] = {
    {{{.control = &F::RF_Active,
       .label = "Attiva",
       .help = "Il file della ricevuta viene stampato sul modulo appena compare"}}},
    {{{.control = &F::RF_Printer,
       .label = "Stampante",
       .help =
           "Nome esatto della stampante per ricevute; quello di una stampante installata riempie la porta, un altro "
           "viene salvato subito"}}},
    {{{.control = &F::RF_COM,
       .label = "Porta",
       .help = "Porta della stampante per ricevute; se è vuota o zero non si stampa",
       .columns = 12}}},
    {{{.control = &F::RF_File,
       .label = "File della ricevuta",
       .help = "File in cui Orbis51 scrive la ricevuta fiscale",
       .browse = Browse::file}}},
    {{{.control = &F::RF_Righe,
       .label = "Righe stampabili sul modulo (solo per Epson U-295)",
       .help = "Righe che stanno su un modulo; si trovano con Strumenti > Epson TM-U295",
       .columns = 5}}},
};

constexpr Row preconto[] = {
    {{{.control = &F::Cort_Active, .label = "Attivo", .help = "I preconti della cartella CortOrbis vengono stampati"},
      {.control = &F::Cort_Logo,
       .label = "Stampa il logo",
       .help = "Stampa l'immagine del logo in testa al preconto"}}},
    {{{.control = &F::Cort_Printer,
       .label = "Stampante",
       .help = "Tipo di stampante del preconto; il nome di una stampante installata riempie la porta"}}},
    {{{.control = &F::Cort_COM,
       .label = "Porta",
       .help = "Porta del preconto: un numero per COM, oppure un nome come LPT1",
       .columns = 12,
       .button = "Prova seriale",
       .buttonHelp = "Stampa una riga di prova sulla stampante seriale del preconto (DPT-282)"}}},
    {{{.control = &F::Cort_File,
       .label = "Immagine del logo",
       .help = "Immagine BMP stampata in testa al preconto",
       .browse = Browse::file}}},
};

constexpr GroupLayout groups[] = {
    {.title = "Generale", .column = 0, .rows = generale},
    {.title = "Misuratore fiscale",
     .column = 0,
     .active = &F::MF_Active,
     .device = Device::fiscalPrinter,
     .rows = misuratoreFiscale},
    {.title = "Connessione", .column = 0, .rows = connessione},
    {.title = "Display", .column = 1, .active = &F::DLY_Active, .device = Device::display, .rows = display},
    {.title = "Ricevuta fiscale",
     .column = 1,
     .active = &F::RF_Active,
     .device = Device::slipPrinter,
     .rows = ricevutaFiscale},
    {.title = "Preconto", .column = 1, .active = &F::Cort_Active, .device = Device::courtesyPrinter, .rows = preconto},
};

}  // namespace

std::span<const GroupLayout> mainLayout() { return groups; }

}  // namespace tellaxis::ui
