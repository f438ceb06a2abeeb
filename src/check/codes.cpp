// Codes: the table.
#include "check/codes.h"

#include <iterator>

namespace tellaxis {

namespace {

using enum Level;

constexpr CodeRow rows[] = {
    {Code::lookedAt, "looked-at", ok},
    {Code::off, "off", Level::off},

    {Code::secondCopy, "second-copy", ok},
    {Code::notRunning, "not-running", warning,
     "Avviare Tellaxis (o il servizio tellaxis): finch\xE9 \xE8 fermo nessun lavoro viene preso."},
    {Code::settingsUnreadable, "settings-unreadable", error,
     "Controllare --main-folder e i permessi del file; alla prima installazione avviare Tellaxis una volta e salvare."},
    {Code::settingsNotWritable, "settings-not-writable", error,
     "Dare all'utente che esegue Tellaxis il permesso di scrivere il file, e togliere l'attributo di sola lettura."},
    {Code::mainFolderNotWritable, "main-folder-not-writable", error,
     "Dare all'utente che esegue Tellaxis il permesso di scrivere nella cartella."},
    {Code::diskNearlyFull, "disk-nearly-full", error, "Liberare spazio su quel disco."},
    {Code::posFolderMissing, "pos-folder-missing", warning,
     "Correggere Orbis_Directory, o controllare che l'unit\xE0 di rete sia collegata."},
    {Code::metricsFolderMissing, "metrics-folder-missing", warning,
     "Creare la cartella, o correggere metrics nella tabella [bridge] di devices.toml."},
    {Code::metricsFolderNotWritable, "metrics-folder-not-writable", warning,
     "Dare all'utente che esegue Tellaxis il permesso di scrivere nella cartella: il file vi viene sostituito ogni 15 "
     "secondi."},

    {Code::gateClosed, "gate-closed", warning,
     "La riapre l'applicativo quando ha finito, o il riavvio di Tellaxis (che scarta i lavori in attesa); se resta "
     "chiusa, portare la chiave a -1."},
    {Code::jobsWaiting, "jobs-waiting", warning,
     "Controllare che il ponte sia in funzione e che il driver o la stampante rispondano."},
    {Code::midnightHang, "midnight-hang", warning, "Mettere midnight = true nella tabella [bridge] di devices.toml."},

    {Code::mfFileMissing, "mf-file-missing", error,
     "Scrivere in MF_File il file che il driver legge: senza, nessuno scontrino viene consegnato."},
    {Code::mfFileFolderMissing, "mf-file-folder-missing", error,
     "Creare la cartella o correggere MF_File; di solito la crea l'installazione del driver."},
    {Code::mfFileFolderNotWritable, "mf-file-folder-not-writable", error,
     "Dare all'utente che esegue Tellaxis il permesso di scrivere nella cartella di MF_File."},
    {Code::driverMissing, "driver-missing", error,
     "Installare il driver del misuratore, o correggere MF_Driver con il percorso giusto (fra virgolette se ha "
     "spazi)."},
    {Code::driverNotExecutable, "driver-not-executable", error,
     "Controllare che MF_Driver sia un programma o un file .bat e che l'utente lo possa eseguire."},
    {Code::driverKindUnknown, "driver-kind-unknown", error,
     "Scegliere il protocollo del misuratore: con questo i lavori sono presi e cancellati senza consegnarli."},
    {Code::driverKindMismatch, "driver-kind-mismatch", warning,
     "Scegliere il modello (MF_Type) e il protocollo (MF_Prot) con lo stesso numero."},
    {Code::answerFileMissing, "answer-file-missing", error,
     "Scrivere in MF_File_Output il file in cui il driver risponde: senza, ogni scontrino aspetta fino all'ultimo."},
    {Code::fpMateFolderMissing, "fpmate-folder-missing", error,
     "Creare la cartella, o correggere Orbis_Directory: FPMate legge da l\xEC."},
    {Code::logFolderMissing, "log-folder-missing", warning,
     "Creare la cartella c:\\Tellaxis, o togliere MF_ChkLog: senza la cartella il registro non si scrive."},

    {Code::portMissing, "port-missing", error,
     "Controllare il numero della porta, il cavo e l'adattatore; tellaxisd porte elenca quelle che ci sono. Su Linux "
     "la "
     "tabella [[serial]] di devices.toml dice dove sta ogni COM."},
    {Code::portBusy, "port-busy", error, "Chiudere il programma che la tiene aperta, o cambiare porta."},
    {Code::portRefused, "port-refused", error,
     "Dare all'utente che esegue Tellaxis l'accesso alla porta (su Linux il gruppo dialout)."},
    {Code::portSettings, "port-settings", error,
     "Scrivere velocit\xE0, parit\xE0, bit di dati e bit di stop come 9600,N,8,1."},
    {Code::familyUnknown, "family-unknown", error,
     "Scegliere il display dall'elenco: con questo tipo il file resta dov'\xE8 e non si mostra nulla."},
    {Code::layoutUnknown, "layout-unknown", error,
     "Scegliere una stampante per cui esiste un modulo, con il nome scritto proprio cos\xEC."},
    {Code::printerTypeUnknown, "printer-type-unknown", error,
     "Scegliere il tipo di stampante dall'elenco: con questo i preconti sono cancellati senza stamparli."},
    {Code::displayFileFolderMissing, "display-file-folder-missing", error,
     "Correggere Display_File, o creare la cartella in cui l'applicativo scrive."},
    {Code::slipFileFolderMissing, "slip-file-folder-missing", error,
     "Correggere RF_File, o creare la cartella in cui l'applicativo scrive."},
    {Code::logoMissing, "logo-missing", warning, "Mettere l'immagine al suo posto, o togliere la spunta del logo."},
    {Code::logoUnreadable, "logo-unreadable", warning, "Salvare di nuovo il logo come bitmap di Windows (.bmp)."},
    {Code::printerMissing, "printer-missing", error,
     "Installare la stampante con quel nome o su quella porta, o elencarla in devices.toml; tellaxisd porte dice quali "
     "ci sono."},
    {Code::printerNotReady, "printer-not-ready", error,
     "Mettere la carta, chiudere il coperchio, accendere o riavviare la stampante."},
    {Code::controlFontMissing, "control-font-missing", warning,
     "Installare il driver del fabbricante della stampante, che ha i caratteri del dispositivo e questo per i "
     "comandi."},

    {Code::ftpUnreachable, "ftp-unreachable", error,
     "Controllare FTP_Indirizzo, la rete e il firewall (porta 21 e collegamenti passivi)."},
    {Code::ftpRefused, "ftp-refused", error, "Controllare FTP_User e FTP_Pw."},
    {Code::dialUpIncomplete, "dialup-incomplete", error,
     "Scrivere le chiavi mancanti: le chiavi WEB_ riprese dall'applicativo non sono queste."},
    {Code::scheduleUnreadable, "schedule-unreadable", warning, "Dare all'utente il permesso di leggere il file."},
    {Code::scheduleEntry, "schedule-entry", warning,
     "Scrivere la voce come LUN#0930=25#NOTTE#: giorno, #, ore e minuti; codice, #, etichetta, #."},
};

constexpr bool inOrder() {
  for (std::size_t i = 0; i < std::size(rows); ++i)
    if (static_cast<std::size_t>(rows[i].code) != i) return false;
  return true;
}
static_assert(inOrder() && std::size(rows) == static_cast<std::size_t>(Code::scheduleEntry) + 1,
              "each code has its row, in the order of the codes");

}  // namespace

std::span<const CodeRow> checkCodes() { return rows; }

const CodeRow& rowOf(Code code) { return rows[static_cast<std::size_t>(code)]; }

}  // namespace tellaxis
