"""A virtual display, the game's window on it, and what can be seen there. ./play --shot and the tests of the running
game look through this: Xvfb draws, xdotool finds windows, import takes the picture, and libX11 asks a window to close."""
import ctypes
import os
import re
import struct
import subprocess
import zlib
from dataclasses import dataclass

TITLE = "^Tarnvale$"
LIT = 24  # a pixel is lit when one of its colours is at least this bright


@dataclass
class Display:
    process: subprocess.Popen
    name: str  # ":99"

    def environment(self, **more):
        return dict(os.environ, DISPLAY=self.name, ALSOFT_DRIVERS="null", **more)


@dataclass
class Picture:
    width: int
    height: int
    pixels: bytes  # red, green, blue, row by row from the top


def start_display(width=1024, height=768):
    """A screen on a display number that nobody uses; end it with stop_display. Without -noreset it would start anew whenever
    a game ends, and the next one may come in between."""
    reader, writer = os.pipe()
    server = subprocess.Popen(["Xvfb", "-displayfd", str(writer), "-screen", "0", f"{width}x{height}x24", "-nolisten", "tcp", "-noreset"],
                              pass_fds=[writer], stderr=subprocess.DEVNULL)
    os.close(writer)
    with os.fdopen(reader) as pipe:
        number = pipe.readline().strip()
    if not number:
        raise RuntimeError("no virtual display could be started")
    return Display(server, ":" + number)


def stop_display(display):
    display.process.terminate()
    display.process.wait()


def take_picture(display):
    # import can wait for ever for a window that closes just then.
    for patience in (20, 20, 60):
        try:
            out = subprocess.run(["import", "-window", "root", "-depth", "8", "ppm:-"], env=display.environment(), check=True,
                                 capture_output=True, timeout=patience).stdout
            break
        except subprocess.TimeoutExpired:
            continue
    else:
        raise RuntimeError("no picture of the display could be taken")
    head = re.match(rb"P6\s+(\d+)\s+(\d+)\s+255\s", out)
    return Picture(int(head[1]), int(head[2]), out[head.end():])


def write_png(picture, path):
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    stride = picture.width * 3
    rows = b"".join(b"\0" + picture.pixels[at:at + stride] for at in range(0, len(picture.pixels), stride))
    with open(path, "wb") as out:
        out.write(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", picture.width, picture.height, 8, 2, 0, 0, 0))
                  + chunk(b"IDAT", zlib.compress(rows)) + chunk(b"IEND", b""))


def cut(picture, left, top, right, bottom):
    """A part of the picture, its edges given as shares of the whole from 0 to 1."""
    x0, x1 = int(left * picture.width), int(right * picture.width)
    y0, y1 = int(top * picture.height), int(bottom * picture.height)
    rows = [picture.pixels[(y * picture.width + x0) * 3:(y * picture.width + x1) * 3] for y in range(y0, y1)]
    return Picture(x1 - x0, y1 - y0, b"".join(rows))


def middle(picture, share=0.4):
    return cut(picture, 0.5 - share / 2, 0.5 - share / 2, 0.5 + share / 2, 0.5 + share / 2)


def count_over(picture, limit):
    """Pixels with one colour of at least limit: every channel becomes 0 or 1, and the three planes are joined bit by bit."""
    flags = picture.pixels.translate(bytes(value >= limit for value in range(256)))
    red, green, blue = (int.from_bytes(flags[channel::3], "big") for channel in range(3))
    return (red | green | blue).bit_count()


def lit(picture):
    return count_over(picture, LIT)


def changed(one, other):
    """Pixels that differ between two pictures of the same size."""
    difference = int.from_bytes(one.pixels, "big") ^ int.from_bytes(other.pixels, "big")
    return count_over(Picture(one.width, one.height, difference.to_bytes(len(one.pixels), "big")), 1)


def find_window(display):
    """The window's number, or None while there is none."""
    out = subprocess.run(["xdotool", "search", "--name", TITLE], env=display.environment(), capture_output=True, text=True)
    return int(out.stdout.split()[0]) if out.stdout.split() else None


class ClientMessage(ctypes.Structure):
    _fields_ = [("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("send_event", ctypes.c_int), ("display", ctypes.c_void_p),
                ("window", ctypes.c_ulong), ("message_type", ctypes.c_ulong), ("format", ctypes.c_int),
                ("data", ctypes.c_long * 5), ("rest", ctypes.c_long * 12)]


def close_window(display, window):
    """What the cross in a window's frame does: the window is asked, and its program decides."""
    x11 = ctypes.CDLL("libX11.so.6")
    x11.XOpenDisplay.restype = ctypes.c_void_p
    x11.XInternAtom.restype = ctypes.c_ulong
    x11.XInternAtom.argtypes = [ctypes.c_void_p, ctypes.c_char_p, ctypes.c_int]
    x11.XSendEvent.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_int, ctypes.c_long, ctypes.c_void_p]
    x11.XCloseDisplay.argtypes = [ctypes.c_void_p]
    connection = x11.XOpenDisplay(display.name.encode())
    if not connection:
        raise RuntimeError(f"no connection to display {display.name}")
    protocols, delete = (x11.XInternAtom(connection, name, 0) for name in (b"WM_PROTOCOLS", b"WM_DELETE_WINDOW"))
    message = ClientMessage(type=33, window=window, message_type=protocols, format=32)  # 33: ClientMessage
    message.data[0] = delete
    x11.XSendEvent(connection, window, 0, 0, ctypes.byref(message))
    x11.XCloseDisplay(connection)  # sends what is queued
