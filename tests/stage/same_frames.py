#!/usr/bin/python3
"""Compares an animation, decoded by Pillow, with numbered pictures: what is shown at every picture's time.

same_frames.py ANIMATION DELAY_MS PICTURE...    prints "same", or what differs
"""
import sys

from PIL import Image, ImageChops, ImageSequence


def shown(file):
    """Frames as RGBA with their delays in milliseconds."""
    with Image.open(file) as animation:
        return [(frame.convert("RGBA"), frame.info.get("duration", 0)) for frame in ImageSequence.Iterator(animation)]


def looks_alike(a, b):
    """Over black and over white; what is transparent may have any colour."""
    for ground in ("black", "white"):
        one, other = (Image.alpha_composite(Image.new("RGBA", p.size, ground), p).convert("RGB") for p in (a, b))
        if a.size != b.size or ImageChops.difference(one, other).getbbox() is not None:
            return False
    return True


def main(file, delay, *pictures):
    frames = shown(file)
    total = sum(duration for _, duration in frames)
    if total != float(delay) * len(pictures):
        return f"{total} ms instead of {float(delay) * len(pictures)}"
    at, end = 0, frames[0][1]
    for number, picture in enumerate(pictures):
        while number * float(delay) >= end:
            at += 1
            end += frames[at][1]
        with Image.open(picture) as wanted:
            if not looks_alike(frames[at][0], wanted.convert("RGBA")):
                return f"{picture} is shown otherwise"
    return "same"


print(main(*sys.argv[1:]))
