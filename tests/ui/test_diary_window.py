"""Diary window: the jobs of a day, what each looks like, printing one again, and a day with very many."""

import json
import tempfile
import time
import unittest
from pathlib import Path

from gi.repository import GLib

from screen import Window, WindowScenario, rows_of, run, text_of, wait_for, walk
import fiscal_driver
from receipt_printer import ReceiptPrinter

PRINTER = """
[[printer]]
name = "SAMSUNG SRP-500"
port = "COM4:"
target = "folder:spool"
"""
DIARY = PRINTER + """
[bridge]
diary = "diario"
archive = true
"""
COURTESY = dict(Orbis_Directory="C:\\MERIDIA", CORT_Active=-1, CORT_Printer="SAMSUNG", CORT_COM="4")
JOB = "Totale#0#18#5#1#R\r\nCoperto 2,00#0#9#0#0#N\r\n#1\r\n"


class DiaryScenario(WindowScenario):
    devices = DIARY
    settings = COURTESY

    def open(self):
        self.window.menu("Strumenti", "Diario")
        frame = self.window.frame("Diario")
        wait_for(lambda: self.summary(frame), "the jobs")
        return frame

    def summary(self, frame):
        return [label for label in self.window.labels(frame) if "lavor" in label and "problem" in label]

    def jobs(self, frame):
        """Device, outcome, job and reason of each row."""
        return [row[1:5] for row in rows_of(self.window.table("Lavori", frame))]

    def text(self, frame):
        return text_of(self.window.control("Lavoro", frame))

    def printed(self):
        return len(list((self.desk.main / "spool").glob("*.jsonl")))

    def courtesy(self, name="preconto.txt"):
        before = self.printed()
        self.desk.drop(name, JOB, folder="CortOrbis")
        wait_for(lambda: self.printed() > before and not self.desk.jobs("CortIN"), "the job printed")

    def failing_courtesy(self, name="guasto.txt"):
        """A job whose document cannot be written: there is a file where its folder should be."""
        spool = self.desk.main / "spool"
        spool.rename(self.desk.main / "altrove")
        spool.write_text("")
        self.desk.drop(name, JOB, folder="CortOrbis")
        wait_for(lambda: not self.desk.jobs("CortOrbis") and not self.desk.jobs("CortIN"), "the job taken")


class Diary(DiaryScenario):
    def test_the_latest_job_comes_first_with_its_text_and_its_page(self):
        self.courtesy("primo.txt")
        self.courtesy("secondo.txt")
        frame = self.open()
        self.assertEqual([job[:2] for job in self.jobs(frame)], [["preconto", "fatto"]] * 2)
        self.assertEqual([job[2] for job in self.jobs(frame)], ["secondo.txt", "primo.txt"])
        self.assertEqual(self.summary(frame), ["2 lavori, 0 problemi"])
        wait_for(lambda: "Totale#0#18#5#1#R" in self.text(frame), "the text of the job")
        self.assertIn("secondo.txt - preconto, fatto", self.text(frame))
        wait_for(lambda: self.pages(frame), "the page")
        before = self.printed()
        run("xdotool", "key", "Down")
        wait_for(lambda: "primo.txt - preconto" in self.text(frame), "the next job by the keyboard")
        wait_for(lambda: "Coperto 2,00" in self.text(frame), "its text")
        self.assertEqual(self.printed(), before, "looking at a job prints nothing")

    def pages(self, frame):
        return [item for item in walk(frame) if item.name == "Pagina"]

    def test_problems_and_devices_can_be_chosen(self):
        self.courtesy("buono.txt")
        self.failing_courtesy()
        frame = self.open()
        self.assertEqual(len(self.jobs(frame)), 2)
        wrong = [job for job in self.jobs(frame) if job[2] == "guasto.txt"][0]
        self.assertEqual(wrong[1], "non riuscito")
        self.assertTrue(wrong[3])
        self.window.press("Solo i problemi", frame)
        wait_for(lambda: [job[2] for job in self.jobs(frame)] == ["guasto.txt"], "the problems alone")
        self.assertEqual(self.summary(frame), ["1 lavoro, 1 problema"])
        lists = [item for item in walk(frame) if item.name == "Periferica" and item.getRoleName() == "combo box"]
        self.window.control("display", lists[0]).queryAction().doAction(0)
        wait_for(lambda: self.jobs(frame) == [], "no job of the display")

    def test_another_day_can_be_chosen_and_new_jobs_are_read(self):
        folder = self.desk.main / "diario"
        folder.mkdir(exist_ok=True)
        old = dict(id="260102-1", time="2026-01-02T10:00:00.000", device="slip", job="vecchia.txt", bytes=1)
        old.update(outcome="done", ms=1, reason="", copy="")
        (folder / "2026-01-02.jsonl").write_text(json.dumps(old, separators=(",", ":")) + "\n")
        frame = self.open()
        self.assertEqual(self.jobs(frame), [])
        self.courtesy()
        self.window.press("Aggiorna", frame)
        wait_for(lambda: len(self.jobs(frame)) == 1, "the new job")
        lists = [item for item in walk(frame) if item.name == "Giorno" and item.getRoleName() == "combo box"]
        self.window.control("02/01/2026", lists[0]).queryAction().doAction(0)
        wait_for(lambda: [job[2] for job in self.jobs(frame)] == ["vecchia.txt"], "the old day")
        self.assertIn("non è stato conservato", self.text(frame))

    def test_a_job_is_printed_again_only_after_a_yes(self):
        self.courtesy()
        frame = self.open()
        self.window.press("Ristampa", frame)
        question = self.window.dialog("Ristampa")
        self.assertIn("Rimettere in coda preconto.txt", self.window.words(question))
        run("xdotool", "key", "Return")
        wait_for(lambda: "Ristampa" not in self.window.frames(), "the question gone")
        self.assertEqual((self.printed(), self.desk.jobs("CortOrbis")), (1, []))
        self.window.press("Ristampa", frame)
        self.window.press("Ristampa", self.window.dialog("Ristampa"))
        wait_for(lambda: self.printed() == 2, "the job printed again")
        wait_for(lambda: any("rimesso in coda" in label for label in self.window.labels(frame)), "what came of it")


class FiscalReprint(DiaryScenario):
    settings = {}

    def setUp(self):
        super().setUp()
        self.receipts = self.desk.root / "receipts"
        self.window.stop()
        fiscal_driver.configure(self.desk, "ONDA DRIVER - 91", MF_Driver=fiscal_driver.command_line(self.desk))
        self.window = Window(self.desk)
        wait_for(self.window.is_visible, "the window")

    def issued(self):
        return len(list(self.receipts.glob("*"))) if self.receipts.exists() else 0

    def test_a_receipt_that_came_out_takes_a_yes_to_a_stronger_question(self):
        self.desk.drop("scontr01.txt")
        wait_for(lambda: self.issued() == 1 and not self.desk.jobs("IN"), "the receipt")
        frame = self.open()
        title = "Ristampa di un lavoro fiscale"
        self.window.press("Ristampa", frame)
        self.assertIn("un secondo scontrino per la stessa vendita", self.window.words(self.window.dialog(title)))
        run("xdotool", "key", "Return")
        wait_for(lambda: title not in self.window.frames(), "the question gone")
        self.assertEqual((self.issued(), self.desk.jobs("Orbis")), (1, []))
        self.window.press("Ristampa", frame)
        self.window.press("Sì, emetti di nuovo", self.window.dialog(title))
        wait_for(lambda: self.issued() == 2, "the second receipt")


class ManyJobs(DiaryScenario):
    COUNT = 100_000

    def test_a_hundred_thousand_jobs_open_at_once(self):
        folder = self.desk.main / "diario"
        folder.mkdir(exist_ok=True)
        today = time.strftime("%Y-%m-%d")
        start = dict(device="courtesy", bytes=512, ms=12, reason="", copy="")
        with open(folder / f"{today}.jsonl", "w", encoding="utf-8") as file:
            for number in range(1, self.COUNT + 1):
                outcome = "done" if number % 100 else "failed"
                line = dict(id=f"{today[2:].replace('-', '')}-{number}", time=f"{today}T10:05:42.123", **start)
                line.update(job=f"preconto{number}.txt", outcome=outcome)
                file.write(json.dumps(line, separators=(",", ":")) + "\n")
        self.window.menu("Strumenti", "Diario")
        begun = time.monotonic()
        wait_for(lambda: "Diario" in self.answer(self.window.frames), "the window", 60)
        frame = self.answer(self.window.frames)["Diario"]
        wait_for(lambda: self.answer(self.summary, frame) == ["100000 lavori, 1000 problemi"], "the jobs", 60)
        print(f"{self.COUNT} jobs after {time.monotonic() - begun:.2f} s, with the accessibility interface listening")
        wait_for(lambda: "preconto100000.txt" in self.answer(self.text, frame), "the latest job", 60)
        run("xdotool", "key", "End")
        wait_for(lambda: "preconto1.txt" in self.answer(self.text, frame), "the first job", 60)

    def answer(self, question, *arguments):
        """The toolkit tells the accessibility interface of every row, and answers nothing meanwhile."""
        limit = time.monotonic() + 60
        while True:
            try:
                return question(*arguments)
            except GLib.GError:
                self.assertTrue(self.window.running(), "the program ended")
                if time.monotonic() > limit:
                    raise
                time.sleep(0.2)


class WithoutDiary(WindowScenario):
    devices = PRINTER
    settings = COURTESY

    def test_the_menu_says_how_to_have_one(self):
        self.window.menu("Strumenti", "Diario (non attivo)")
        wait_for(lambda: len(self.window.all_frames()) == 2, "the message")
        words = "".join(self.window.words(frame) for _, frame in self.window.all_frames())
        self.assertIn('diary = "diario"', words)
        self.assertFalse((self.desk.main / "diario").exists())


class WaitingForPaper(WindowScenario):
    """The strip of the main window while a printer says that it cannot print."""

    settings = dict(CORT_Active=-1, CORT_Printer="OLIVETTI PRT100 NonFiscale", CORT_COM=3)

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.printer = ReceiptPrinter(Path(folder.name) / "received.bin")
        self.addCleanup(self.printer.close)
        target = f"escpos:tcp://127.0.0.1:{self.printer.port}"
        self.devices = f'[[printer]]\nname = "POS"\nport = "COM3:"\ntarget = "{target}"\nwait_for_paper = true\n'
        self.devices += '[bridge]\nrole = "SERVER"\n'
        super().setUp()

    def test_the_strip_says_what_the_jobs_wait_for_and_the_role(self):
        self.assertIn("Postazione: SERVER", self.window.labels())
        self.printer.tell("senza carta")
        self.assertNotIn("manca la carta", self.window.labels())
        self.desk.drop("preconto.txt", "Totale\r\n", folder="CortOrbis")
        wait_for(lambda: "manca la carta" in self.window.labels(), "what is missing")
        self.printer.tell("carta")
        wait_for(lambda: any("preconto.txt eseguito" in label for label in self.window.labels()), "the job done")
        self.assertNotIn("manca la carta", self.window.labels())


if __name__ == "__main__":
    unittest.main()
