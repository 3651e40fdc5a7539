#!/usr/bin/env python3
"""Writes the seed inputs of the fuzz targets into fuzz/corpus/<target>/.

An input is a 6-byte header (flags: FixedBits 8/12/16 in bits 0-1, wrapping 4, parallel 8,
portable loops 16; FixedStart; Columns low, high; Rows; capacity) and then the data."""
import os
import random
import struct
import zlib

here = os.path.dirname(os.path.abspath(__file__))
random.seed(7)


def header(flags=0, start=0, columns=0, rows=0, capacity=255):
    return bytes([flags, start, columns & 0xFF, columns >> 8, rows, capacity])


def words(values):
    return b"".join(struct.pack("<H", v & 0xFFFF) for v in values)


def camera(n, base=400, spread=6):
    return [base + i // 3 + random.randint(-spread, spread) + (3000 if i % 37 == 0 else 0) for i in range(n)]


def pack12(data):
    out = bytearray()
    for i in range(0, len(data) - 3, 4):
        b0, b1, b2, b3 = data[i:i + 4]
        out += bytes([b0, ((b1 & 15) << 4) | (b2 >> 4), ((b2 & 15) << 4) | (b3 & 15)])
    return bytes(out)


def write(target, name, content):
    folder = os.path.join(here, "corpus", target)
    os.makedirs(folder, exist_ok=True)
    with open(os.path.join(folder, name), "wb") as f:
        f.write(content)


frame = words(camera(96))
flat = words([0] * 40)
extremes = words([0x8000 if i % 2 == 0 else 0 for i in range(270)] + [5, 6, 7])
small = words([100 + (i % 5) for i in range(30)])

# Round trips: the same images under several parameter sets.
for codec in ["12bit", "FixedBitsOfWord", "IMX", "LZ4", "Uncompressed", "Zlib"]:
    target = "RoundTrip" + codec
    write(target, "camera", header(1, 0, 16, 6, 200) + frame)
    write(target, "camera-8bit-wrap", header(4, 4, 12, 8, 128) + frame)
    write(target, "flat-one-row", header(2, 0, 0, 1, 64) + flat)
    write(target, "literals-parallel", header(8 | 2, 0, 91, 3, 250) + extremes)
    write(target, "small-deltas-portable", header(16 | 1, 0, 7, 4, 100) + small)

# Decompression: valid streams of each format and a few broken ones.
write("Decompress12bit", "packed", header(0, 0, 0, 0, 255) + pack12(frame))
write("Decompress12bit", "tail", header(0, 0, 0, 0, 255) + pack12(frame) + b"\x12\x30")
write("Decompress12bit", "bad-size", header(0, 0, 0, 0, 255) + b"\x01\x02\x03\x04")
write("DecompressFixedBitsOfWord", "8bit", header(0, 4, 16, 3, 255) + bytes(range(48)))
write("DecompressFixedBitsOfWord", "12bit-tail", header(1, 0, 7, 2, 255) + bytes(range(22)))
write("DecompressFixedBitsOfWord", "16bit-row", header(2, 3, 0, 1, 255) + frame[:64])
write("DecompressIMX", "tokens", header(0, 0, 8, 2, 255) +
      bytes([0x81, 0x01, 0x11, 0x11, 0x18, 0x5E, 0x7F, 0x03, 1, 0, 2, 0, 3, 0, 0x80, 0x34, 0x12, 0xFE, 0x02, 0x03]))
write("DecompressIMX", "nibbles", header(0, 0, 16, 1, 255) +
      bytes([0x00, 0x81, 0x79, 0x79, 0x79, 0x79, 0x79, 0x79, 0x98, 0x64]))
write("DecompressIMX", "deltas", header(0, 0, 40, 1, 255) + bytes([1, 2, 0xFF, 0x7E, 0x82] * 8))
write("DecompressLZ4", "literals", header(0, 0, 0, 0, 255) + bytes([0x80]) + b"ABCDEFGH")
write("DecompressLZ4", "match", header(0, 0, 0, 0, 255) +
      bytes([0x44]) + b"abcd" + bytes([4, 0]) + bytes([0x50]) + b"efghi")
write("DecompressUncompressed", "frame", header(0, 0, 0, 0, 255) + frame)
write("DecompressZlib", "frame", header(0, 0, 0, 0, 255) + zlib.compress(frame))
write("DecompressZlib", "cut", header(0, 0, 0, 0, 255) + zlib.compress(frame)[:-7])


# ELF images for the SONAME reader: a dynamic section and the string table it links to.
def elf(bits, endian, soname=b"libseed.so.1"):
    e = "<" if endian == "little" else ">"
    word = "Q" if bits == 64 else "I"
    ehsize, shentsize = (64, 64) if bits == 64 else (52, 40)
    strtab = b"\0" + soname + b"\0"
    strtab_at = ehsize
    dynamic_at = (strtab_at + len(strtab) + 7) // 8 * 8
    dynamic = struct.pack(e + word * 4, 14, 1, 0, 0)  # DT_SONAME at 1, DT_NULL
    shoff = dynamic_at + len(dynamic)
    ident = b"\x7fELF" + bytes([2 if bits == 64 else 1, 1 if endian == "little" else 2, 1]) + bytes(9)
    header = ident + struct.pack(e + "HHI" + word * 3 + "IHHHHHH", 3, 0x3E if bits == 64 else 3, 1, 0, 0, shoff, 0,
                                 ehsize, 0, 0, shentsize, 3, 0)

    def section(kind, offset, size, link):
        if bits == 64:
            return struct.pack(e + "IIQQQQIIQQ", 0, kind, 0, 0, offset, size, link, 0, 1, 0)
        return struct.pack(e + "IIIIIIIIII", 0, kind, 0, 0, offset, size, link, 0, 1, 0)

    image = bytearray(header + strtab)
    image += bytes(dynamic_at - len(image)) + dynamic
    image += bytes(shentsize) + section(3, strtab_at, len(strtab), 0) + section(6, dynamic_at, len(dynamic), 1)
    return bytes(image)


write("ElfSoname", "64-little", elf(64, "little"))
write("ElfSoname", "32-big", elf(32, "big"))
write("ElfSoname", "64-no-soname", elf(64, "little").replace(struct.pack("<QQ", 14, 1), struct.pack("<QQ", 1, 1)))
