"""Tools: the slip test with its messages, the printers list, the About box."""

import json
import unittest

from screen import WindowScenario, text_of, wait_for, walk

PRINTERS = """
[[printer]]
name = "EPSON TM-L90 Receipt"
port = "LPT1:"
target = "folder:spool/l90"

[[printer]]
name = "EPSON TM-U295 Slip"
port = "COM1:"
target = "folder:spool/u295"
"""

NOT_SET_UP = "Nella schermata principale non sono stati impostati correttamtente\ni parametri relativi alla Epson TM-U295."
NO_NUMBERS = "Impostare numero righe e numero colonne."
RESULT = (
    "Al termine della stampa\nControllare il numero delle righe stampate\ne dei caratteri per riga\n"
    "e utilizzare le informazioni acquisite per impostare i valori in Tellaxis e Orbis51"
)


class Tools(WindowScenario):
    devices = PRINTERS

    def box_saying(self, text):
        """The message box with this text, once it is there."""
        found = []

        def look():
            found[:] = [(title, frame) for title, frame in self.window.all_frames() if self.window.words(frame) == text]
            return bool(found)

        wait_for(look, f"a message {text!r}; there are {[self.window.words(f) for _, f in self.window.all_frames()][-1:]}")
        return found[0]

    def dismiss(self, text):
        """Answers the box with this text and returns its title."""
        title, box = self.box_saying(text)
        self.window.press("OK", box)
        wait_for(lambda: all(self.window.words(f) != text for _, f in self.window.all_frames()), "the box gone")
        return title


class SlipTest(Tools):
    settings = dict(RF_Stampante="EPSON TM-U295 Slip", RF_Seriale="COM1:", RF_File="C:\\R.txt")

    def open(self):
        self.window.menu("Strumenti", "Epson TM-U295")
        return self.window.frame("TEST Epson TM-U295")

    def printed(self):
        folder = self.desk.main / "spool" / "u295"
        if not folder.exists():
            return []
        documents = [file.read_text("utf-8").splitlines() for file in sorted(folder.glob("*.jsonl"))]
        return [[json.loads(line)["text"] for line in document] for document in documents]

    def test_a_slip_is_printed_and_the_result_explained(self):
        window = self.open()
        self.window.enter("Righe", "3", window)
        self.window.enter("Colonne", "12", window)
        self.window.press("Stampa TEST", window)
        self.assertEqual(self.dismiss(RESULT), "Risultato TEST")
        self.assertEqual(self.printed(), [["A23456789012", "R02", "R03"]])

    def test_missing_numbers_are_asked_for(self):
        window = self.open()
        self.window.enter("Righe", "tre", window)
        self.window.press("Stampa TEST", window)
        self.assertEqual(self.dismiss(NO_NUMBERS), "Tellaxis")
        self.assertEqual(self.printed(), [])

    def test_the_printer_must_have_been_set_up(self):
        self.window.enter("Ricevuta fiscale - Stampante", "EPSON TM-L90 Receipt")
        self.window.save()
        window = self.open()
        self.window.press("Stampa TEST", window)
        self.assertEqual(self.dismiss(NOT_SET_UP), "Tellaxis")
        self.assertEqual(self.printed(), [])

    def test_a_failing_test_print_says_so(self):
        window = self.open()
        self.window.enter("Righe", "2", window)
        self.window.enter("Colonne", "-1", window)
        self.window.press("Stampa TEST", window)
        self.dismiss("La stampa di prova non è riuscita: numero di colonne negativo")

    def test_there_is_one_of_it(self):
        self.open()
        self.open()
        self.assertEqual([title for title, _ in self.window.all_frames()].count("TEST Epson TM-U295"), 1)


class PrintersList(Tools):
    ENTRIES = ["Port    > LPT1:", "Printer > EPSON TM-L90 Receipt", "-" * 37]
    ENTRIES += ["Port    > COM1:", "Printer > EPSON TM-U295 Slip", "-" * 37]

    def open(self):
        self.window.menu("Strumenti", "Stampanti - Porte")
        return self.window.frame("Elenco Porte Stampanti")

    def listed(self, window):
        return text_of(self.window.control("Elenco Porte Stampanti", window)).splitlines()[: len(self.ENTRIES)]

    def test_every_printer_is_listed_with_its_port(self):
        self.assertEqual(self.listed(self.open()), self.ENTRIES)

    def test_opening_it_again_neither_doubles_the_window_nor_the_entries(self):
        first = len(text_of(self.window.control("Elenco Porte Stampanti", self.open())))
        again = self.open()
        self.assertEqual([title for title, _ in self.window.all_frames()].count("Elenco Porte Stampanti"), 1)
        self.assertEqual(len(text_of(self.window.control("Elenco Porte Stampanti", again))), first)
        self.window.press("Chiudi", again)
        wait_for(lambda: "Elenco Porte Stampanti" not in self.window.frames(), "the window closed")
        self.assertEqual(self.listed(self.open()), self.ENTRIES)
        self.assertTrue(self.window.running())


class About(Tools):
    def test_it_opens_once_and_closes(self):
        for _ in range(2):
            self.window.menu("About", "About Tellaxis")
            window = self.window.frame("About")
        self.assertEqual([title for title, _ in self.window.all_frames()].count("About"), 1)
        self.assertIn("Tellaxis ", self.window.words(window))
        self.window.press("Chiudi", window)
        wait_for(lambda: "About" not in self.window.frames(), "the window closed")
        self.assertTrue(self.window.running())

    def test_the_menus_bear_their_captions(self):
        items = [item.name for item in walk(self.window.main()) if item.getRoleName() in ("menu", "menu item")]
        for caption in ("File", "Esci", "Strumenti", "Epson TM-U295", "Stampanti - Porte", "About"):
            self.assertIn(caption, items)


if __name__ == "__main__":
    unittest.main()
