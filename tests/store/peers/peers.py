#!/usr/bin/env python3
"""peers.py plistlib|libplist [--write] FOLDER: what another maker's reader makes of the property lists in a folder.

Prints a line for each file, by name: what it says, or "-" when it is no dictionary. That is "yes", "no", and behind a
letter a number (modulo 2^64), the bits of a real, the seconds of a date since 1970, the bytes of a text or of data;
elements in brackets, the entries of a dictionary in order. With --write, the maker writes each that is one again, as
FILE.xml and FILE.binary."""
import calendar
import ctypes
import ctypes.util
import datetime
import os
import plistlib
import struct
import sys
from pathlib import Path


def said_list(elements):
    return "[" + ",".join(elements) + "]"


def said_dictionary(entries):
    return "{" + ",".join(sorted("s" + key.hex() + "=" + element for key, element in entries)) + "}"


def said_real(real):
    return "nan" if real != real else "r" + struct.pack(">d", real).hex()


def said(value):
    if isinstance(value, bool):
        return "yes" if value else "no"
    if isinstance(value, int):
        return f"i{value % 2**64}"
    if isinstance(value, float):
        return said_real(value)
    if isinstance(value, str):
        return "s" + value.encode("utf-8", "surrogatepass").hex()
    if isinstance(value, bytes):
        return "x" + value.hex()
    if isinstance(value, datetime.datetime):
        return f"d{calendar.timegm(value.timetuple())}"
    if isinstance(value, list):
        return said_list(map(said, value))
    if isinstance(value, dict):
        return said_dictionary((key.encode("utf-8", "surrogatepass"), said(each)) for key, each in value.items())
    return "?"


class Plistlib:
    def read(self, data):
        try:
            value = plistlib.loads(data)
            return (value, said(value)) if isinstance(value, dict) else None
        except Exception:  # it throws whatever it comes upon, and reads values that contain themselves
            return None

    def write(self, value):
        return plistlib.dumps(value), plistlib.dumps(value, fmt=plistlib.FMT_BINARY)


class Libplist:
    BOOLEAN, UINT, REAL, STRING, ARRAY, DICT, DATE, DATA = range(8)
    FROM_2001 = 978307200

    def __init__(self):
        self.library = ctypes.CDLL(ctypes.util.find_library("plist-2.0"))
        self.library.plist_array_get_item.restype = ctypes.c_void_p
        for get in self.library.plist_get_string_ptr, self.library.plist_get_data_ptr:
            get.restype = ctypes.c_void_p

    def number(self, get, node, kind, size=1):
        numbers = (kind * size)()
        get(node, *(ctypes.byref(numbers, i * ctypes.sizeof(kind)) for i in range(size)))
        return numbers[0]

    def bytes_of(self, get, node):
        size = ctypes.c_uint64()
        begin = get(node, ctypes.byref(size))
        return ctypes.string_at(begin, size.value) if begin else b""

    def entries(self, dictionary):
        position, key, element = ctypes.c_void_p(), ctypes.c_char_p(), ctypes.c_void_p()
        self.library.plist_dict_new_iter(dictionary, ctypes.byref(position))
        while True:
            self.library.plist_dict_next_item(dictionary, position, ctypes.byref(key), ctypes.byref(element))
            if not element:
                return
            yield key.value, self.said(ctypes.c_void_p(element.value))

    def said(self, node):
        library = self.library
        kind = library.plist_get_node_type(node)
        if kind == self.BOOLEAN:
            return "yes" if self.number(library.plist_get_bool_val, node, ctypes.c_uint8) else "no"
        if kind == self.UINT:
            return f"i{self.number(library.plist_get_uint_val, node, ctypes.c_uint64)}"
        if kind == self.REAL:
            return said_real(self.number(library.plist_get_real_val, node, ctypes.c_double))
        if kind == self.STRING:
            return "s" + self.bytes_of(library.plist_get_string_ptr, node).hex()
        if kind == self.DATA:
            return "x" + self.bytes_of(library.plist_get_data_ptr, node).hex()
        if kind == self.DATE:  # seconds and microseconds
            return f"d{self.number(library.plist_get_date_val, node, ctypes.c_int32, 2) + self.FROM_2001}"
        if kind == self.ARRAY:
            return said_list(self.said(ctypes.c_void_p(library.plist_array_get_item(node, i)))
                             for i in range(library.plist_array_get_size(node)))
        return said_dictionary(self.entries(node)) if kind == self.DICT else "?"

    def read(self, data):
        value = ctypes.c_void_p()
        self.library.plist_from_memory(data, len(data), ctypes.byref(value))
        is_dictionary = value and self.library.plist_get_node_type(value) == self.DICT
        return (value, self.said(value)) if is_dictionary else None

    def write(self, value):
        for write in self.library.plist_to_xml, self.library.plist_to_bin:
            begin, size = ctypes.c_void_p(), ctypes.c_uint32()
            write(value, ctypes.byref(begin), ctypes.byref(size))
            yield ctypes.string_at(begin, size.value)


def answer(maker, path, is_writing):
    found = maker.read(path.read_bytes())
    if found and is_writing:
        for suffix, data in zip((".xml", ".binary"), maker.write(found[0])):
            Path(str(path) + suffix).write_bytes(data)
    return found[1] if found else "-"


def answer_all(maker, files, is_writing):
    """libplist does not survive every file (a key with a 0 in it ends the process): the next process goes on behind
    it."""
    done = 0
    while done < len(files):
        reader, writer = os.pipe()
        if os.fork() == 0:
            os.close(2)
            with os.fdopen(writer, "w") as answers:
                for path in files[done:]:
                    print(answer(maker, path, is_writing), file=answers, flush=True)
            os._exit(0)
        os.close(writer)
        with os.fdopen(reader) as answers:
            for line in answers:
                print(line, end="")
                done += 1
        _, status = os.wait()
        if status != 0 and done < len(files):
            print("-")
            done += 1


answer_all(Plistlib() if sys.argv[1] == "plistlib" else Libplist(), sorted(Path(sys.argv[-1]).iterdir()),
           "--write" in sys.argv)
