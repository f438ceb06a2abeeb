"""Demo: a sample cash desk whose every device receives a job from the real bridge; says what arrived and how fast."""

import sys
import time

import fiscal_driver
from harness import Desk, wait_for

RECEIPT = "VENDITA REP 1  12,50\r\nVENDITA REP 2   3,00\r\nTOTALE        15,50\r\n"


class Report:
    """One line a job; remembers whether anything was missing."""

    def __init__(self):
        self.missing = []

    def job(self, device, begin, arrived, show):
        """Lets `begin` cause a job and waits until `arrived`; `show` tells what reached the device."""
        begun = time.monotonic()
        begin()
        try:
            wait_for(arrived, device, 30)
        except AssertionError as failure:
            self.missing.append(device)
            print(f"  MISSING  {device}: {failure}")
            return
        took = (time.monotonic() - begun) * 1000
        print(f"  {took:5.0f} ms  {device}: {show()}")


def one_line(text):
    return " | ".join(line.strip() for line in text.strip().splitlines())


def program_driver(desk, report, protocol):
    fiscal_driver.configure(desk, protocol, MF_Driver=fiscal_driver.command_line(desk, work=100))
    run(desk, report, lambda: report.job(
        protocol,
        lambda: desk.drop("scontrino.txt", RECEIPT),
        lambda: fiscal_driver.receipts(desk) and not desk.jobs("IN"),
        lambda: one_line(fiscal_driver.receipts(desk)[0]),
    ))


def input_file_driver(desk, report):
    protocol = "CASIO/DITRON - 24"
    fiscal_driver.configure(desk, protocol)
    fiscal_driver.watching(desk, desk.c("MF\\in.txt"))
    run(desk, report, lambda: report.job(
        protocol,
        lambda: desk.drop("scontrino.txt", RECEIPT),
        lambda: fiscal_driver.receipts(desk),
        lambda: one_line(fiscal_driver.receipts(desk)[0]),
    ))


def fpmate_driver(desk, report):
    fiscal_driver.configure(desk, "FPMate - 29", MF_Buffer=1)
    for folder in ("Epson", "_Buffer"):
        desk.c("MERIDIA\\" + folder).mkdir()
    target = desk.c("MERIDIA\\Epson\\Scontr.xml")
    for slot in ("#0003", "#0007"):
        desk.c("MERIDIA\\_Buffer\\" + slot).write_text(f"<scontrino posto='{slot}'/>")
    fiscal_driver.watching(desk, target, work=0)

    def fed():
        return len(fiscal_driver.receipts(desk))

    def both():
        for number in (1, 2):
            report.job(
                f"FPMate - 29, buffered receipt {number}",
                lambda: desk.drop("segnale.txt", ""),
                lambda: fed() == number and not desk.jobs("IN"),
                lambda: fiscal_driver.receipts(desk)[-1],
            )

    run(desk, report, both)


def run(desk, report, jobs):
    """Starts the bridge, lets the jobs pass and stops it."""
    program = desk.start(polling=0.5)
    jobs()
    status = program.stop()
    if status != 0:
        report.missing.append("a clean end")
        print(f"  MISSING  the bridge ended with status {status}")


def with_desk(scene):
    desk = Desk()
    try:
        scene(desk)
    finally:
        desk.close()


def main():
    report = Report()
    print("Fiscal printers (each line: time from the job file to the device, at a polling interval of 500 ms):")
    for protocol in fiscal_driver.PROGRAM_PROTOCOLS:
        with_desk(lambda desk: program_driver(desk, report, protocol))
    with_desk(lambda desk: input_file_driver(desk, report))
    with_desk(lambda desk: fpmate_driver(desk, report))
    if report.missing:
        print("Not everything arrived: " + ", ".join(report.missing))
        return 1
    print("Everything arrived, and the bridge stopped cleanly each time.")
    return 0


if __name__ == "__main__":
    sys.exit(main())
