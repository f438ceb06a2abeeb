"""Settings: every kind of field changed, saved and read back from the settings file."""

import os
import time
import unittest

import pyatspi

from screen import WindowScenario, click, is_showing, run, type_keys, walk, wait_for

PRINTERS = """
[[printer]]
name = "EPSON TM-L90 Receipt"
port = "LPT1:"
target = "folder:spool/l90"

[[printer]]
name = "SAMSUNG"
port = "LPT2:"
target = "folder:spool/samsung"
"""


class ClosedFolders(WindowScenario):
    settings = dict(MF_Active=-1, MF_File="C:\\Driver\\in.txt", MF_Prot="ONDA DRIVER - 91")

    @unittest.skipIf(os.geteuid() == 0, "a folder takes root's changes whatever its permissions")
    def test_saving_tells_of_a_folder_that_is_closed(self):
        folder = self.desk.c("Driver")
        folder.mkdir()
        folder.chmod(0o555)
        self.window.press("Salva")
        told = "Non si può scrivere in C:\\Driver"
        wait_for(lambda: self.window.labels().count(told) == 2, "the warning above the form and beside the button")
        self.assertNotIn("Impostazioni salvate", self.window.labels())
        folder.chmod(0o755)
        self.window.save()
        self.assertNotIn(told, self.window.labels())


class Fields(WindowScenario):
    settings = dict(MF_Active=-1, MF_File="C:\\MF\\in.txt", MF_Prot="ONDA DRIVER - 91", Display_Active=-1, Display_Type="ASEM")
    devices = PRINTERS

    def test_a_typed_text_is_saved(self):
        self.window.enter("Misuratore fiscale - File per il driver", "C:\\MF\\città.txt")
        self.assertIn("Modifiche non salvate", self.window.labels())
        self.assertEqual(self.stored("MF_File"), "C:\\MF\\in.txt")
        self.window.save()
        self.assertEqual(self.stored("MF_File"), "C:\\MF\\città.txt")

    def test_salva_and_strumenti_each_have_a_key_of_their_own(self):
        self.window.enter("Misuratore fiscale - File per il driver", "C:\\MF\\da tastiera.txt")
        run("xdotool", "windowactivate", "--sync", self.window.main_id(), "key", "alt+s")
        wait_for(lambda: self.stored("MF_File") == "C:\\MF\\da tastiera.txt", "the key of Salva")
        run("xdotool", "windowactivate", "--sync", self.window.main_id(), "key", "alt+t")
        wait_for(lambda: is_showing(self.window.control("Diagnosi")), "the key of Strumenti")
        run("xdotool", "key", "Escape", "Escape")

    def test_an_emptied_field_keeps_its_value_in_the_file_and_comes_back(self):
        self.window.enter("Misuratore fiscale - File per il driver", "")
        self.window.save()
        self.assertEqual(self.stored("MF_File"), "C:\\MF\\in.txt")
        self.assertEqual(self.window.text("Misuratore fiscale - File per il driver"), "C:\\MF\\in.txt")

    def test_an_emptied_point_of_sale_folder_is_saved_as_empty(self):
        self.assertEqual(self.window.text("Generale - Cartella di Orbis51"), "C:\\Meridia")
        self.window.enter("Generale - Cartella di Orbis51", "")
        self.window.save()
        self.assertEqual(self.stored("Orbis_Directory"), "")
        self.assertEqual(self.window.text("Generale - Cartella di Orbis51"), "")

    def test_check_boxes_are_saved(self):
        self.window.tick("Generale - Settaggi come Orbis51")
        self.window.tick("Misuratore fiscale - Usa il buffer")
        self.window.tick("Preconto - Stampa il logo")
        self.window.save()
        self.assertEqual([self.stored(key) for key in ("Orbis_Setting", "MF_Buffer", "CORT_Logo")], ["1", "1", "1"])
        self.window.tick("Misuratore fiscale - Usa il buffer", on=False)
        self.window.save()
        self.assertEqual(self.stored("MF_Buffer"), "0")

    def test_an_entry_of_a_list_is_saved(self):
        self.window.choose("Misuratore fiscale - Modello", "93 - RCH NUCLEO")
        wait_for(lambda: self.window.text("Misuratore fiscale - Modello") == "93 - RCH NUCLEO", "the chosen entry")
        self.window.save()
        self.assertEqual(self.stored("MF_Type"), "93 - RCH NUCLEO")

    def test_a_list_takes_a_typed_text(self):
        self.window.enter("Misuratore fiscale - Driver", "FPMate - 29")
        self.window.save()
        self.assertEqual(self.stored("MF_Prot"), "FPMate - 29")

    def test_a_device_that_is_not_configured_is_saved_as_inactive(self):
        self.window.enter("Misuratore fiscale - Modello", "0 - NON PRESENTE")
        self.assertTrue(self.window.checked("Misuratore fiscale - Attivo"))
        self.window.save()
        self.assertEqual(self.stored("MF_Active"), "0")
        self.assertFalse(self.window.checked("Misuratore fiscale - Attivo"))

    def test_every_saved_field_reaches_its_key(self):
        texts = {
            "Display - Famiglia": ("Display_Type", "POSLINE"),
            "Display - File dei messaggi": ("Display_File", "C:\\D\\d.txt"),
            "Display - Porta COM": ("Display_COM", "7"),
            "Display - Parametri": ("Display_Parametri", "19200,E,7,2"),
            "Misuratore fiscale - Modello": ("MF_Type", "91 - RCH ONDA"),
            "Misuratore fiscale - Driver": ("MF_Prot", "GLOBE DRIVER - 106"),
            "Misuratore fiscale - File per il driver": ("MF_File", "C:\\F\\in"),
            "Misuratore fiscale - File di risposta": ("MF_File_Output", "C:\\F\\out"),
            "Misuratore fiscale - Porta COM": ("MF_COM", "5"),
            "Misuratore fiscale - Parametri": ("MF_Parametri", "4800,O,8,1"),
            "Misuratore fiscale - Ritardo (cs)": ("MF_Ritardo", "75"),
            "Ricevuta fiscale - Stampante": ("RF_Stampante", "EPSON TM-L90 Receipt"),
            "Ricevuta fiscale - Porta": ("RF_Seriale", "LPT9:"),
            "Ricevuta fiscale - File della ricevuta": ("RF_File", "C:\\R\\r.txt"),
            "Ricevuta fiscale - Righe stampabili sul modulo (solo per Epson U-295)": ("RF_Righe", "41"),
            "Preconto - Stampante": ("CORT_Printer", "DPT-282"),
            "Preconto - Porta": ("CORT_COM", "3"),
            "Preconto - Immagine del logo": ("CORT_File", "C:\\L\\logo.bmp"),
            "Generale - Cartella di Orbis51": ("Orbis_Directory", "D:\\POS"),
        }
        ticks = {
            "Display - Attivo": "Display_Active",
            "Misuratore fiscale - Attivo": "MF_Active",
            "Ricevuta fiscale - Attiva": "RF_Active",
            "Preconto - Attivo": "CORT_Active",
        }
        for name, (_, text) in texts.items():
            self.window.enter(name, text)
        for name in ticks:
            self.window.tick(name)
        self.window.save()
        self.assertEqual({key: self.stored(key) for key, _ in texts.values()}, dict(texts.values()))
        self.assertEqual({key: self.stored(key) for key in ticks.values()}, dict.fromkeys(ticks.values(), "-1"))
        self.assertEqual({name: self.window.text(name) for name in texts}, {name: text for name, (_, text) in texts.items()})

    def test_fields_that_are_never_saved_cannot_be_edited(self):
        for name in ("Misuratore fiscale - Programma driver", "Display - Ritardo (cs)", "Connessione - Server FTP"):
            self.assertFalse(self.window.control(name).getState().contains(pyatspi.STATE_EDITABLE), name)
        self.assertFalse(self.window.control("Misuratore fiscale - Registra nel log").getState().contains(pyatspi.STATE_SENSITIVE))


class Printers(WindowScenario):
    settings = dict(RF_Stampante="EPSON TM-L90 Receipt", RF_Seriale="LPT7:", CORT_Printer="SAMSUNG", CORT_COM="LPT8:")
    devices = PRINTERS

    def test_the_load_is_no_change_of_the_users(self):
        self.assertEqual(self.window.text("Ricevuta fiscale - Stampante"), "EPSON TM-L90 Receipt")
        self.assertEqual(self.window.text("Ricevuta fiscale - Porta"), "LPT7:")
        self.assertEqual(self.window.text("Preconto - Porta"), "LPT8:")
        self.window.save()
        self.assertEqual(self.stored("RF_Seriale"), "LPT7:")
        self.assertEqual(self.stored("CORT_COM"), "LPT8:")

    def test_typing_a_printers_name_saves_each_prefix_and_fills_the_port_at_the_end(self):
        self.desk.settings(RF_Stampante="", RF_Seriale="")
        box = self.window.control("Ricevuta fiscale - Stampante")
        for prefix in ("E", "EP", "EPS", "EPSO"):
            type_keys(box, prefix)
            wait_for(lambda: (self.stored("RF_Stampante"), self.stored("RF_Seriale")) == (prefix, "LPT7:"), f"saved {prefix}")
        type_keys(box, "EPSON TM-L90 Receipt")
        wait_for(lambda: self.window.text("Ricevuta fiscale - Porta") == "LPT1:", "the printer's port")
        self.assertEqual(self.stored("RF_Stampante"), "EPSON TM-L90 Receip")
        self.window.save()
        self.assertEqual((self.stored("RF_Stampante"), self.stored("RF_Seriale")), ("EPSON TM-L90 Receipt", "LPT1:"))

    def test_choosing_a_courtesy_printer_fills_its_port(self):
        self.window.choose("Preconto - Stampante", "UNIPOS MERIDIA")
        wait_for(lambda: self.window.text("Preconto - Stampante") == "UNIPOS MERIDIA", "the chosen entry")
        self.assertEqual(self.window.text("Preconto - Porta"), "LPT8:")
        self.window.choose("Preconto - Stampante", "SAMSUNG")
        wait_for(lambda: self.window.text("Preconto - Porta") == "LPT2:", "the printer's port")


class Form(WindowScenario):
    settings = dict(FTP_Indirizzo="ftp.example.it", FTP_User="negozio", FTP_Pw="segreto")

    def controls(self):
        kinds = ("text", "check box", "push button", "combo box")
        return [item for item in walk(self.window.main()) if item.getRoleName() in kinds and is_showing(item)]

    def test_every_control_has_a_name_and_says_what_it_does(self):
        for item in self.controls():
            self.assertTrue(item.name, item.getRoleName())
            inner = item.getRoleName() == "text" and item.parent.getRoleName() == "combo box"
            self.assertTrue(item.description or (inner and item.parent.description), f"no help: {item.name}")

    def test_what_the_help_says_is_what_the_program_does(self):
        helps = {item.name: item.description for item in self.controls()}
        pause = next(text for text in helps.values() if "(Display_Delay)" in text)
        self.assertIn("Pausa dopo ogni messaggio", pause)
        self.assertNotIn("righe", pause)
        log = next(text for text in helps.values() if "(MF_ChkLog)" in text)
        self.assertIn("gli scontrini senza risposta", log)
        self.assertIn("con CASIO/DITRON, ogni passaggio al driver", log)

    def test_it_fits_the_screen(self):
        box = self.window.main().queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
        self.assertGreaterEqual((box.x, box.y), (0, 0))
        self.assertLessEqual(box.x + box.width, 1024)
        self.assertLessEqual(box.y + box.height, 768)
        for item in self.controls():
            place = item.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
            self.assertLessEqual(place.x + place.width, box.x + box.width, item.name)
            self.assertLessEqual(place.y + place.height, box.y + box.height, item.name)

    def test_the_tab_key_goes_down_the_left_column_and_then_down_the_right_one(self):
        order = self.tab_order()
        names = [item.name for item in order]
        self.assertEqual(names[0], "Generale - Settaggi come Orbis51")
        self.assertEqual(names[-2:], ["Salva", "Nascondi"])
        self.assertEqual(len(names), len(set(names)), names)
        places = [item.queryComponent().getExtents(pyatspi.DESKTOP_COORDS) for item in order[:-2]]
        right = self.window.control("Display - Attivo").queryComponent().getExtents(pyatspi.DESKTOP_COORDS).x
        columns = [place.x >= right for place in places]
        self.assertEqual(columns, sorted(columns), "back to the left column")
        for before, after in zip(places, places[1:]):
            same_row = abs((before.y + before.height / 2) - (after.y + after.height / 2)) < 12
            if (before.x >= right) == (after.x >= right):
                self.assertTrue(after.x > before.x if same_row else after.y > before.y, "against the eye")

    def focused(self):
        for item in walk(self.window.main()):
            if item.getState().contains(pyatspi.STATE_FOCUSED) and item.getRoleName() != "frame":
                return item
        return None

    def tab_order(self):
        """The controls that the tab key comes to, in order. The arrow of a list is a stop without a name."""
        first = self.window.control("Generale - Settaggi come Orbis51")
        first.queryComponent().grabFocus()
        wait_for(lambda: self.focused() is not None and self.focused().name == first.name, "the first control focused")
        order = [first]
        for _ in range(80):
            run("xdotool", "key", "Tab")
            time.sleep(0.1)
            now = self.focused()
            if now is None or not now.name or now.name == order[-1].name:
                continue
            if now.name == first.name:
                return order
            order.append(now)
        raise AssertionError(f"the tab key never comes round: {[item.name for item in order]}")

    def test_the_connection_is_shown_without_its_password(self):
        self.assertEqual(self.window.text("Connessione - Server FTP"), "ftp.example.it")
        everything = [item.queryText().getText(0, -1) for item in walk(self.window.main()) if item.getRoleName() == "text"]
        self.assertNotIn("segreto", everything)

    def test_an_inactive_device_says_so(self):
        self.assertEqual(self.window.labels().count("non attivo"), 3)
        self.assertEqual(self.window.labels().count("non attiva"), 1)

    def test_browsing_fills_the_field_and_leaves_it_alone_when_given_up(self):
        chosen = self.desk.c("scontrino.txt")
        chosen.write_text("x")
        click(self.window.control("Sfoglia: File per il driver"))
        self.window.dialog("File per il driver")
        run("xdotool", "type", "--delay", "20", str(chosen))
        run("xdotool", "key", "Return")
        wait_for(lambda: self.window.text("Misuratore fiscale - File per il driver") == str(chosen), "the chosen file")
        click(self.window.control("Sfoglia: Cartella di Orbis51"))
        self.window.dialog("Cartella di Orbis51")
        run("xdotool", "key", "Escape")
        wait_for(lambda: "Cartella di Orbis51" not in self.window.frames(), "the folder dialog gone")
        self.assertEqual(self.window.text("Generale - Cartella di Orbis51"), "C:\\Meridia")


if __name__ == "__main__":
    unittest.main()
