"""Printing: courtesy receipts and slips from their job files to folders, to a receipt printer and to a CUPS queue."""

import json
import os
import shutil
import socket
import struct
import subprocess
import tempfile
import threading
import unittest
from pathlib import Path

import sample_jobs
from harness import ON_WINDOWS, Scenario, some_ticks, wait_for

PRIVATE_CUPS = Path(__file__).parent.parent / "platform" / "linux" / "printing" / "private_cups.sh"
ESC_POS_BEGIN = b"\x1b@\x1bt\x10"


class Printing(Scenario):
    def printer(self, name, port, target):
        with open(self.desk.main / "devices.toml", "a", encoding="utf-8") as devices:
            devices.write(f'[[printer]]\nname = "{name}"\nport = "{port}"\ntarget = "{target}"\n')

    def courtesy(self, kind, **more):
        self.desk.settings(Orbis_Setting=0, CORT_Active=-1, CORT_Printer=kind, CORT_COM=3, **more)

    def slip(self, name):
        self.desk.settings(
            Orbis_Setting=0, RF_Active=-1, RF_Stampante=name, RF_Seriale="LPT1:", RF_File="C:\\MERIDIA\\Ricevuta.txt"
        )

    def job(self, text):
        self.desk.drop("preconto.txt", text, "CortOrbis")

    def document(self, number=1):
        """The operations of a document in the folder `spool`, once it is there with all its files."""
        spool = self.desk.main / "spool"
        path = spool / f"{number:06}.jsonl"
        wait_for(path.exists, path.name)
        for kind in [".txt"] + ([] if ON_WINDOWS else [".pdf", ".png"]):
            self.assertTrue(path.with_suffix(kind).exists(), kind)
        return [json.loads(line) for line in path.read_text("utf-8").splitlines()]

    def texts(self, number=1):
        return [operation["text"] for operation in self.document(number) if operation["op"] == "print"]

    def test_a_receipt_of_class_500_keeps_fonts_colour_and_cut(self):
        self.printer("SAMSUNG SRP-500", "COM3:", "folder:spool")
        self.courtesy("SAMSUNG")
        self.desk.start()
        self.job("Totale#0#18#5#1#R\r\n#1\r\n")
        begin, total, cut = self.document()
        self.assertEqual((begin["font"], begin["text"]), ("FontControl", "w"))
        self.assertEqual(
            total,
            {"op": "print", "text": "Totale", "font": "FontA15cpi", "size": 18, "bold": True, "color": "#ff0000"},
        )
        self.assertEqual((cut["font"], cut["text"]), ("FontControl", "P"))
        wait_for(lambda: not self.desk.jobs("CortIN"), "the job file is deleted")

    def test_the_logo_is_a_document_of_its_own(self):
        self.printer("SAMSUNG SRP-350", "COM3:", "folder:spool")
        (self.desk.c("MERIDIA") / "LogoCassa.bmp").write_bytes(sample_jobs.logo())
        self.courtesy("SAMSUNG", CORT_Logo=-1, CORT_File="C:\\MERIDIA\\LogoCassa.bmp")
        self.desk.start()
        self.job(sample_jobs.COURTESY_OTHERS)
        self.assertEqual([operation["op"] for operation in self.document(1)], ["move", "move", "picture"])
        self.assertEqual(self.document(1)[2]["width"], 384)
        self.assertIn("8001234567897", self.texts(2))

    def test_line_printers_print_the_lines_that_are_theirs(self):
        for kind, name, job, first in (
            ("OLIVETTI PRT100 NonFiscale", "OLIVETTI PRT100", sample_jobs.LINE_PRINTER, "TRATTORIA AL PORTO"),
            ("UNIPOS MERIDIA", "UNIPOS", sample_jobs.UNIPOS, "TRATTORIA AL PORTO"),
        ):
            with self.subTest(kind):
                shutil.rmtree(self.desk.main / "spool", ignore_errors=True)
                (self.desk.main / "devices.toml").unlink(missing_ok=True)
                self.printer(name, "COM3:", "folder:spool")
                self.courtesy(kind)
                program = self.desk.start()
                self.job(job)
                self.assertEqual(self.texts()[0], first)
                program.stop()

    def test_slips_print_in_every_layout(self):
        for name in ("EPSON TM-L90 Receipt", "Custom KUBE Ric. Fisc. [A]", "EPSON TM-U295 Slip"):
            with self.subTest(name):
                shutil.rmtree(self.desk.main / "spool", ignore_errors=True)
                (self.desk.main / "devices.toml").unlink(missing_ok=True)
                self.printer(name, "LPT1:", "folder:spool")
                self.slip(name)
                program = self.desk.start()
                slip = self.desk.c("MERIDIA") / "Ricevuta.txt"
                unfinished = self.desk.root / "slip"
                unfinished.write_bytes(sample_jobs.SLIP.encode("cp1252"))
                unfinished.replace(slip)
                self.assertIn("Rossi Mario", "".join(self.texts()))
                wait_for(lambda: not slip.exists(), "the slip's file is deleted")
                program.stop()

    def put_slip(self, text):
        slip = self.desk.c("MERIDIA") / "Ricevuta.txt"
        self.desk.write_whole(slip, text)
        return slip

    def test_nothing_of_a_slip_that_cannot_be_read_comes_out_with_the_next_one(self):
        self.printer("EPSON TM-U295 Slip", "LPT1:", "folder:spool")
        self.slip("EPSON TM-U295 Slip")
        self.desk.start()
        slip = self.put_slip("RR uno\r\nRR due\r\nR\r\n")
        some_ticks(8)
        self.assertTrue(slip.exists())
        self.put_slip("RR tre\r\n")
        self.assertEqual(self.texts(), ["tre"])
        wait_for(lambda: not slip.exists(), "the slip's file is deleted")

    @unittest.skipIf(ON_WINDOWS, "Wine does not see what native programs hold")
    def test_a_slip_still_being_written_is_not_printed_until_closed(self):
        self.printer("EPSON TM-U295 Slip", "LPT1:", "folder:spool")
        self.slip("EPSON TM-U295 Slip")
        self.desk.start()
        slip = self.desk.c("MERIDIA") / "Ricevuta.txt"
        with open(slip, "wb", buffering=0) as writer:
            writer.write(b"RR uno\r\n")
            some_ticks(8)
            self.assertTrue(slip.exists())
            self.assertFalse((self.desk.main / "spool").exists())
            writer.write(b"RR due\r\n")
        self.assertEqual(self.texts(), ["uno", "due"])
        wait_for(lambda: not slip.exists(), "the slip's file is deleted")
        some_ticks()
        self.assertEqual(len(list((self.desk.main / "spool").glob("*.jsonl"))), 1)

    def test_a_slip_printer_out_of_reach_for_a_moment_prints_once_it_is_back(self):
        spool = self.desk.main / "spool"
        spool.write_text("in the folder's place")
        self.printer("EPSON TM-U295 Slip", "LPT1:", "folder:spool")
        self.slip("EPSON TM-U295 Slip")
        self.desk.start()
        slip = self.put_slip("RR uno\r\nRR due\r\n")
        some_ticks(8)
        self.assertTrue(slip.exists())
        spool.unlink()
        self.assertEqual(self.texts(), ["uno", "due"])
        wait_for(lambda: not slip.exists(), "the slip's file is deleted")
        some_ticks()
        self.assertEqual(len(list(spool.glob("*.jsonl"))), 1)

    def test_a_courtesy_job_that_found_its_printer_out_of_reach_costs_itself_alone(self):
        spool = self.desk.main / "spool"
        spool.write_text("in the folder's place")
        self.printer("SAMSUNG SRP-500", "COM3:", "folder:spool")
        self.courtesy("SAMSUNG")
        self.desk.start()
        self.job("perduta#0\r\n")
        wait_for(lambda: not self.desk.jobs("CortOrbis") and not self.desk.jobs("CortIN"), "the job is taken")
        spool.unlink()
        self.job("uno#0\r\n#1\r\n")
        self.assertEqual(self.texts(), ["w", "uno", "P"])

    def test_a_red_line_does_not_make_the_next_slip_red(self):
        self.printer("SAMSUNG SRP-500", "COM3:", "folder:courtesy")
        self.printer("EPSON TM-U295 Slip", "LPT1:", "folder:spool")
        self.desk.settings(CORT_Active=-1, CORT_Printer="SAMSUNG", CORT_COM=3)
        self.slip("EPSON TM-U295 Slip")
        self.desk.start()
        self.job("rosso#0#18#5#1#R\r\n")
        wait_for(lambda: not self.desk.jobs("CortOrbis") and not self.desk.jobs("CortIN"), "the job is taken")
        self.put_slip("RR nero\r\n")
        expected = {"op": "print", "text": "nero", "font": "FontB11", "size": 10, "bold": False, "color": "#000000"}
        self.assertEqual(self.document(), [expected])

    @unittest.skipIf(ON_WINDOWS or os.geteuid() == 0, "a folder takes root's changes whatever its permissions")
    def test_a_slip_that_cannot_be_deleted_is_not_printed(self):
        self.printer("EPSON TM-U295 Slip", "LPT1:", "folder:spool")
        self.slip("EPSON TM-U295 Slip")
        slip = self.put_slip("RR uno\r\n")
        slip.parent.chmod(0o555)
        self.addCleanup(slip.parent.chmod, 0o755)
        self.desk.start()
        some_ticks(8)
        self.assertFalse((self.desk.main / "spool").exists())
        slip.parent.chmod(0o755)
        self.assertEqual(self.texts(), ["uno"])
        wait_for(lambda: not slip.exists(), "the slip's file is deleted")

    def test_a_document_without_an_end_is_ended_with_the_program(self):
        self.printer("SAMSUNG SRP-500", "COM3:", "folder:spool")
        self.courtesy("SAMSUNG")
        program = self.desk.start()
        self.job("uno#0\r\n")
        wait_for(lambda: not self.desk.jobs("CortOrbis") and not self.desk.jobs("CortIN"), "the job is taken")
        some_ticks()
        self.assertFalse((self.desk.main / "spool" / "000001.jsonl").exists())
        self.assertEqual(program.stop(), 0)
        self.assertEqual(self.texts(), ["w", "uno"])

    def test_a_damaged_devices_file_is_refused_with_its_place(self):
        (self.desk.main / "devices.toml").write_text('[[printer]]\nname = "X"\nport = 3\n')
        program = self.desk.launch(*self.desk.arguments())
        self.assertEqual(program.wait(), 2)
        self.assertRegex(program.complaints[-1], 'devices.toml, riga 3, colonna 8: "port"')

    def test_a_receipt_printer_on_the_network_gets_its_bytes(self):
        with socket.create_server(("127.0.0.1", 0)) as listener:
            received = []

            def serve():
                connection, _ = listener.accept()
                with connection, connection.makefile("rb") as stream:
                    received.append(stream.read())

            threading.Thread(target=serve, daemon=True).start()
            self.printer("SAMSUNG SRP-500", "COM3:", f"escpos:tcp://127.0.0.1:{listener.getsockname()[1]}")
            self.courtesy("SAMSUNG")
            self.desk.start()
            self.job("Totale \x80#0#18#5#1#R\r\n#1\r\n".encode("latin-1"))
            wait_for(lambda: received, "the printer gets a document")
        self.assertEqual(
            received[0], ESC_POS_BEGIN + b"\x1d!\x01\x1bE\x01\x1br\x01Totale \x80\n\x1dVB\x00"
        )

    @unittest.skipIf(ON_WINDOWS, "Wine tells of a connection that was reset as of one that ended")
    def test_a_slip_whose_printer_breaks_off_after_the_last_byte_stays_and_is_printed_again(self):
        with socket.create_server(("127.0.0.1", 0)) as listener:
            received = []

            def serve():
                for breaks_off in (True, False):
                    connection, _ = listener.accept()
                    with connection, connection.makefile("rb") as stream:
                        received.append((stream.read(), slip.exists()))
                        if breaks_off:
                            connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))

            self.printer("EPSON TM-U295 Slip", "LPT1:", f"escpos:tcp://127.0.0.1:{listener.getsockname()[1]}")
            self.slip("EPSON TM-U295 Slip")
            program = self.desk.start("--trace")
            slip = self.desk.c("MERIDIA\\Ricevuta.txt")
            threading.Thread(target=serve, daemon=True).start()
            self.put_slip("RR uno\r\n")
            wait_for(lambda: len(received) == 2 and not slip.exists(), "the slip printed", 40)
            some_ticks()
        self.assertEqual(received[0], received[1])
        self.assertEqual(len([line for line in program.complaints if "EndDoc" in line]), 1, program.complaints)

    @unittest.skipIf(ON_WINDOWS, "CUPS is the spooler of Linux")
    def test_a_cups_queue_gets_its_bytes(self):
        folder = Path(tempfile.mkdtemp(prefix="cups-"))
        self.addCleanup(shutil.rmtree, folder, True)
        server = subprocess.Popen([str(PRIVATE_CUPS), str(folder), "pos"], stdout=subprocess.PIPE)
        self.addCleanup(server.stdout.close)
        self.addCleanup(server.wait)
        self.addCleanup(server.terminate)
        self.assertEqual(server.stdout.readline(), b"pronto\n", "cupsd and lpadmin are needed")
        self.printer("OLIVETTI PRT100", "COM3:", "escpos:cups:pos")
        self.courtesy("OLIVETTI PRT100 NonFiscale")
        self.desk.start(environment={"CUPS_SERVER": str(folder / "run" / "cups.sock")})
        self.job("uno§D\r\ndue\r\n")
        printed = folder / "out" / "pos-1.bin"
        wait_for(printed.exists, "the queue prints")
        self.assertEqual(printed.read_bytes(), ESC_POS_BEGIN + b"uno\ndue\n")


if __name__ == "__main__":
    unittest.main()
