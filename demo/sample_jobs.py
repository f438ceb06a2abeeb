"""Demo jobs: what the point-of-sale application of a small restaurant writes."""

import struct

FISCAL = "VENDITA REP 1  12,50\r\nVENDITA REP 2   3,00\r\nTOTALE        15,50\r\n"

DISPLAY = "TOTALE        15,50\r\nGRAZIE, ARRIVEDERCI\r\n"

COURTESY_500 = "".join(
    line + "\r\n"
    for line in (
        "  TRATTORIA AL PORTO#0#18#5#1#N",
        "Via Garibaldi 12, Genova#0#9#0#0#N",
        "Tavolo 7              Coperti 2#0#9#0#0#N",
        "--------------------------------------",
        "2 Coperto                         4,00",
        "1 Spaghetti alle vongole         12,50",
        "1 Branzino al sale               18,00",
        "1 Acqua 1 l                       2,50",
        "--------------------------------------",
        "  TOTALE EURO  37,00#0#18#5#1#R",
        "Documento non fiscale#0#8#0#0#N",
        " #0#9#0#0#N",
        " ",
        "#1",
    )
)

COURTESY_OTHERS = "".join(
    line + "\r\n"
    for line in (
        "TRATTORIA AL PORTO#0#14#1",
        "Via Garibaldi 12, Genova#0#8#0",
        "Tavolo 7         Coperti 2#0#14#0",
        "2 Coperto             4,00",
        "1 Spaghetti vongole  12,50",
        "1 Branzino al sale   18,00",
        "1 Acqua 1 l           2,50",
        "TOTALE EURO          37,00#0#14#1",
        "8001234567897#0#14#13",
        "Documento non fiscale#0#8#0",
        "#1",
    )
)

LINE_PRINTER = "".join(
    line + "\r\n"
    for line in (
        "TRATTORIA AL PORTO§D",
        "Tavolo 7         Coperti 2",
        "1 Spaghetti vongole  12,50",
        "1 Branzino al sale   18,00",
        "TOTALE EURO          30,50§D",
        "Documento non fiscale",
    )
)

UNIPOS = "N:INIZIO\r\n" + "".join(
    "N:SCO:TXT:" + line + "\r\n"
    for line in ("TRATTORIA AL PORTO", "1 Spaghetti vongole  12,50", "1 Branzino al sale   18,00", "TOTALE EURO          30,50")
)

SERIAL = "N1:INIZIO\r\n" + "".join(
    "N2x:" + line + "\r\n" for line in ("TRATTORIA AL PORTO", "1 Spaghetti vongole  12,50", "TOTALE EURO          12,50")
)

SLIP = "".join(
    f'"{line}"\r\n'
    for line in (
        "I1 TRATTORIA AL PORTO di Rossi Mario",
        "I1 Via Garibaldi 12 - 16124 Genova",
        "I1 P. IVA 01234567890",
        "I1 Ricevuta fiscale n. 127/2026",
        "I2 Spett.le Bianchi S.r.l.",
        "I2 Via Roma 1 - 20121 Milano",
        "I2 P. IVA 09876543210",
        "RR Q.ta' Descrizione         Importo",
        "RR   2   Coperto                4,00",
        "RR   1   Spaghetti vongole     12,50",
        "RR   1   Branzino al sale      18,00",
        "RR   1   Acqua 1 l              2,50",
        "RR                          --------",
        "RR       TOTALE EURO           37,00",
    )
)


def logo():
    """A sailing boat as a bitmap of one bit a pixel, 384 by 96."""
    width, height = 384, 96

    def black(x, y):
        sail = 20 <= y < 64 and 196 < x < 196 + (y - 16)
        jib = 28 <= y < 64 and 190 - (y - 22) * 0.8 < x < 190
        hull = 68 <= y < 82 and 130 + (y - 68) < x < 258 - 2 * (y - 68)
        waves = y in (86, 87, 91, 92) and (x // 8 + y // 5) % 2 == 0 and 96 < x < 288
        return sail or jib or hull or waves

    rows = bytearray()
    for y in reversed(range(height)):
        for first in range(0, width, 8):
            rows.append(sum((not black(first + bit, y)) << (7 - bit) for bit in range(8)))
    palette = bytes((0, 0, 0, 0, 255, 255, 255, 0))
    sizes = struct.pack("<IiiHHIIiiII", 40, width, height, 1, 1, 0, len(rows), 8000, 8000, 2, 2)
    offset = 14 + len(sizes) + len(palette)
    return struct.pack("<2sIHHI", b"BM", offset + len(rows), 0, 0, offset) + sizes + palette + bytes(rows)
