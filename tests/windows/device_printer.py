"""Device printer: a printer under Wine whose driver has fonts of its own, and what reached its port."""

import os
import re
import subprocess
from pathlib import Path

from harness import EMULATOR, program_path

ADD_PRINTER = Path(os.environ["ADD_PRINTER"])

DESCRIPTION = """*PPD-Adobe: "4.3"
*FormatVersion: "4.3"
*FileVersion: "1.0"
*LanguageVersion: English
*LanguageEncoding: ISOLatin1
*PCFileName: "DEVFONT.PPD"
*Manufacturer: "Test"
*Product: "(Test)"
*ModelName: "Test"
*ShortNickName: "Test"
*NickName: "Test"
*PSVersion: "(3010.000) 0"
*LanguageLevel: "3"
*ColorDevice: True
*DefaultColorSpace: RGB
*TTRasterizer: Type42
*DefaultResolution: 300dpi
*OpenUI *PageSize/Media Size: PickOne
*OrderDependency: 10 AnySetup *PageSize
*DefaultPageSize: A4
*PageSize A4/A4: "<</PageSize[595 842]/ImagingBBox null>>setpagedevice"
*CloseUI: *PageSize
*OpenUI *PageRegion: PickOne
*OrderDependency: 10 AnySetup *PageRegion
*DefaultPageRegion: A4
*PageRegion A4/A4: "<</PageSize[595 842]/ImagingBBox null>>setpagedevice"
*CloseUI: *PageRegion
*DefaultImageableArea: A4
*ImageableArea A4/A4: "0 0 595 842"
*DefaultPaperDimension: A4
*PaperDimension A4/A4: "595 842"
"""

GLYPHS = dict(
    zip(
        " !\"#$%&'()*+,-./0123456789:;<=>?@[\\]^_",
        "space exclam quotedbl numbersign dollar percent ampersand quotesingle parenleft parenright asterisk plus comma "
        "hyphen period slash zero one two three four five six seven eight nine colon semicolon less equal greater question "
        "at bracketleft backslash bracketright asciicircum underscore".split(),
    )
)
GLYPHS.update({letter: letter for letter in "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"})
LETTERS = {name: letter for letter, name in GLYPHS.items()}


def metrics(font):
    """The driver's knowledge of a font: every glyph 0.6 em wide."""
    lines = [f"C {ord(letter)} ; WX 600 ; N {name} ; B 0 -150 600 700 ;" for letter, name in sorted(GLYPHS.items())]
    return "\n".join(
        [
            "StartFontMetrics 2.0",
            *(f"{key} {font}" for key in ("FontName", "FullName", "FamilyName")),
            "Weight Medium",
            "ItalicAngle 0",
            "IsFixedPitch true",
            "FontBBox -28 -250 628 805",
            "UnderlinePosition -100",
            "UnderlineThickness 50",
            "Version 001.000",
            "EncodingScheme AdobeStandardEncoding",
            "CapHeight 562",
            "XHeight 426",
            "Ascender 629",
            "Descender -157",
            f"StartCharMetrics {len(lines)}",
            *lines,
            "EndCharMetrics",
            "EndFontMetrics",
            "",
        ]
    )


class DevicePrinter:
    """A printer of the desk called `name` on `port`, with `fonts` in its driver."""

    def __init__(self, desk, name, port, fonts):
        self.output = desk.root / "output.ps"
        folder = desk.root / "driver"
        folder.mkdir()
        for font in fonts:
            (folder / f"{font}.afm").write_text(metrics(font))
        described = "".join(f'*Font {font}: Standard "(001.000)" Standard ROM\n' for font in fonts)
        (folder / "device.ppd").write_text(f"{DESCRIPTION}*DefaultFont: {fonts[0]}\n{described}")
        self._run(desk, "reg", "add", "HKCU\\Software\\Wine\\Fonts", "/v", "AFMPath", "/d", str(folder), "/f")
        self._run(
            desk, "reg", "add", "HKCU\\Software\\Wine\\Printing\\Spooler", "/v", port, "/d", f"|cat >> {self.output}", "/f"
        )
        self._run(desk, str(ADD_PRINTER), name, port, program_path(folder / "device.ppd"), *fonts)

    @staticmethod
    def _run(desk, *command):
        subprocess.run([*EMULATOR, *command], env=desk.environment(), check=True, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL)

    def documents(self):
        return self.output.read_text("latin-1").split("%!PS-Adobe")[1:] if self.output.exists() else []


def printed(document):
    """What a document shows, in order: pairs of a font and the text of one line in it."""
    lines = []
    font = None
    for word in re.finditer(r"/(\S+) findfont|/(\S+) glyphshow|\b(moveto)\b", document):
        chosen, glyph, moved = word.groups()
        if chosen:
            font = chosen
        elif moved:
            lines.append([font, ""])
        elif lines:
            lines[-1][0] = font
            lines[-1][1] += LETTERS.get(glyph, "?")
    return [(face, text) for face, text in lines if text]
