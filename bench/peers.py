"""The commands with which other programs do the job of an import: convert a folder of true-colour BMP files of one size
to indexed pictures that share a palette of at most 256 colours. Programs that are not installed are skipped."""

import glob
import os
import shutil
import subprocess

PILLOW = """
import sys
from PIL import Image
out, dither, sources = sys.argv[1], int(sys.argv[2]), sys.argv[3:]
pictures = [Image.open(source).convert("RGB") for source in sources]
width, height = pictures[0].size
sheet = Image.new("RGB", (width, height * len(pictures)))
for i, picture in enumerate(pictures):
    sheet.paste(picture, (0, i * height))
palette = sheet.quantize(256, method=2)
for i, picture in enumerate(pictures):
    picture.quantize(palette=palette, dither=dither).save(f"{out}/{i:03d}.bmp")
"""


def sources_of(folder):
    return sorted(glob.glob(f"{folder}/*.bmp"))


def python_with_pillow():
    for python in ("python3", "/usr/bin/python3"):
        if subprocess.run([python, "-c", "import PIL"], capture_output=True).returncode == 0:
            return python
    return None


def ffmpeg(folder, out):
    return ["ffmpeg", "-nostdin", "-v", "error", "-y", "-pattern_type", "glob", "-i", f"{folder}/*.bmp", "-lavfi",
            "split[a][b];[a]palettegen=reserve_transparent=0[p];[b][p]paletteuse=dither=bayer:bayer_scale=2",
            "-pix_fmt", "pal8", "-c:v", "bmp", f"{out}/%03d.bmp"]


def imagemagick(folder, out, dither):
    """Joins all pictures into one sheet, reduces it and splits it again, which is the only way to share a palette."""
    sources = sources_of(folder)
    side = next(n for n in range(1, 1000) if n * n >= len(sources))
    rows = []
    for first in range(0, len(sources), side):
        rows += ["(", *sources[first:first + side], "+append", ")"]
    size = subprocess.run(["identify", "-format", "%wx%h", sources[0]], capture_output=True, text=True).stdout
    return ["convert", *rows, "-append", "+repage", "-dither", dither, "-colors", "256", "-crop", size, "+repage",
            f"BMP3:{out}/%03d.bmp"]


def gifsicle(folder, out, dither):
    """Starts from GIF files of 256 colours each, its only input format; creating them is not timed."""
    gifs = f"{out}.gifs"
    if not os.path.isdir(gifs):
        os.makedirs(gifs)
        for source in sources_of(folder):
            name = os.path.basename(source).replace(".bmp", ".gif")
            subprocess.run(["convert", source, "-dither", "None", "-colors", "256", f"{gifs}/{name}"], check=True)
    return ["gifsicle", "--no-warnings", "--merge", "--colors", "256", "--gamma", "1", "--color-method", "median-cut",
            *dither, "-o", f"{out}/all.gif", *sorted(glob.glob(f"{gifs}/*.gif"))]


def jobs(folder, scratch):
    """The commands by description. Each writes to its own folder, which exists."""
    result = {}

    def add(words, make, *arguments):
        out = f"{scratch}/{len(result)}"
        os.makedirs(out, exist_ok=True)
        result[words] = make(folder, out, *arguments)

    if shutil.which("ffmpeg"):
        add("FFmpeg, shared palette, ordered dither", ffmpeg)
    if shutil.which("convert"):
        add("ImageMagick, one sheet, Floyd-Steinberg", imagemagick, "FloydSteinberg")
        add("ImageMagick, one sheet, no dither", imagemagick, "None")
    if shutil.which("gifsicle") and shutil.which("convert"):
        add("Gifsicle, ordered dither, from reduced pictures", gifsicle, ["--dither=o4"])
        add("Gifsicle, no dither, from reduced pictures", gifsicle, [])
    python = python_with_pillow()
    if python:
        for words, dither in (("Floyd-Steinberg", "3"), ("no dither", "0")):
            add(f"Pillow, fast octree, {words}",
                lambda folder, out, dither: [python, "-c", PILLOW, out, dither, *sources_of(folder)], dither)
    return result


def versions():
    lines = []
    for command in (["ffmpeg", "-version"], ["convert", "-version"], ["gifsicle", "--version"],
                    [python_with_pillow() or "none", "-c", "import PIL; print('Pillow', PIL.__version__)"]):
        if shutil.which(command[0]):
            lines.append(subprocess.run(command, capture_output=True, text=True).stdout.splitlines()[0])
    return lines
