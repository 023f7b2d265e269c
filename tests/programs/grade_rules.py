# SPDX-License-Identifier: MIT
"""The grade of every file of a tree, derived from the raw rule files and the files on disk alone.

A second account of the rules, written from their wording and as plain as they allow: nothing is compiled or kept, and no line
is shared with the program that it judges.
"""
import os
import re
import stat
import time

HEADER_BYTES = 512
ENCRYPTED_FROM = 16384
FALLBACK_MESSAGES = ["Header OK", "Header Corrupt", "No Extension", "Unknown or ambiguous file type", "File encrypted",
                     "Access error", "File too small to test (<512 bytes)", "File is zero bytes", "Invalid File Name",
                     "Appears to be of file type: "]
GOOD, CORRUPT, NO_EXTENSION, UNKNOWN, ENCRYPTED, ACCESS_ERROR, TOO_SMALL, ZERO_BYTES, INVALID_NAME, COMMON = range(10)


# --- text ---

def page_character(byte):
    """A byte of Windows-1252; the five that it leaves open stand for themselves."""
    try:
        return bytes([byte]).decode("cp1252")
    except UnicodeDecodeError:
        return chr(byte)


def lower_byte(byte):
    lower = page_character(byte).lower()
    for other in range(256):
        if page_character(other) == lower:
            return other
    return byte


PAGE = [page_character(byte) for byte in range(256)]
LOWER = bytes(lower_byte(byte) for byte in range(256))


def page_text(raw):
    return "".join(PAGE[byte] for byte in raw)


def list_text(path):
    """A native path as a row holds it: what a row cannot carry is U+DC00 + byte, and a comma is a greater sign."""
    out, at = [], 0
    while at < len(path):
        byte = path[at]
        if byte < 0x20 or byte in b">\\":
            character, width = chr(0xDC00 + byte), 1
        else:
            character, width = utf8_character(path, at)
        out.append(">" if character == "," else character)
        at += width
    return "".join(out)


def utf8_character(raw, at):
    for width in range(1, 5):
        try:
            return raw[at:at + width].decode("utf-8"), width
        except UnicodeDecodeError:
            continue
    return chr(0xDC00 + raw[at]), 1


def lines_of(raw):
    lines = re.split(rb"\r\n|\r|\n", raw)
    return lines[:-1] if lines[-1] == b"" else lines


def fields_of(line):
    return line.split(b",") if line else []


# --- numbers ---

def leading_number(raw):
    """Blanks are skipped, the reading stops at the first character that cannot go on with a number."""
    text = raw.decode("latin-1").replace(" ", "").replace("\t", "")
    match = re.match(r"[+-]?(\d+\.?\d*|\.\d+)([eEdD][+-]?\d+)?", text)
    return float(re.sub("[dD]", "e", match.group())) if match else 0.0


def plain_number(raw):
    text = raw.decode("latin-1").strip(" ")
    return float(text) if re.fullmatch(r"[+-]?(\d+\.?\d*|\.\d+)([eE][+-]?\d+)?", text) else 0.0


def hex_bytes(raw):
    pairs = (raw[at:at + 2] for at in range(0, len(raw), 2))
    return bytes(int(pair, 16) if re.fullmatch(rb"[0-9A-Fa-f]{1,2}", pair) else 0 for pair in pairs)


# --- one record ---

MISS, HIT, BROKEN_HIT, GIVEN_UP = range(4)


def try_record(fields, position, header):
    """A record without a term is taken for a hit; a position below 1 ends the whole search."""
    if len(fields) < 2:
        return BROKEN_HIT
    term = hex_bytes(fields[1]) if len(fields) == 2 or fields[2] == b"H" else fields[1]
    term = term.translate(LOWER)
    if position == 0:
        return HIT if term in header else MISS
    start = round(position)
    if start < 1:
        return GIVEN_UP
    if start > HEADER_BYTES + 1:
        return MISS
    return HIT if header[start - 1:start - 1 + len(term)] == term else MISS


# --- the wildcard match of the skip list ---

def wildcard_expression(pattern):
    """None for a pattern that is not one: it cannot be compared, and the file is kept."""
    out, at = "", 0
    while at < len(pattern):
        character = pattern[at]
        at += 1
        if character == "[":
            end = pattern.find("]", at)
            if end < 0:
                return None
            out += set_expression(pattern[at:end])
            at = end + 1
        else:
            out += {"*": ".*", "?": ".", "#": "[0-9]"}.get(character, re.escape(character))
    return re.compile(out, re.DOTALL)


def set_expression(body):
    if body in ("", "!"):
        return re.escape(body)
    negated, body = ("^", body[1:]) if body[0] == "!" else ("", body)
    ranges, at = "", 0
    while at < len(body):
        if body[at + 1:at + 2] == "-" and at + 2 < len(body):
            ranges += re.escape(body[at]) + "-" + re.escape(body[at + 2])
            at += 3
        else:
            ranges += re.escape(body[at])
            at += 1
    return "[" + negated + ranges + "]"


class Rules:
    """What a job knows: the bytes of the rule files by name, None for a file that is not there."""

    def __init__(self, term_files, messages=None, common=None, skip=None, use_common=True, use_skip=True):
        self.term_files = {name.lower(): raw for name, raw in term_files.items()}
        lines = lines_of(messages or b"")
        self.messages = [page_text(line) for line in lines[:10]] if len(lines) >= 10 else FALLBACK_MESSAGES
        self.common = lines_of(common or b"")
        self.use_common = use_common and common is not None
        self.skip = [self._skip_expression(line) for line in lines_of(skip or b"")] if use_skip else []
        self.opened = 0

    @staticmethod
    def _skip_expression(line):
        pattern = page_text(line)
        pattern = pattern if pattern.startswith("*") else "*" + pattern
        pattern = pattern if pattern.endswith("*") else pattern + "*"
        return wildcard_expression(pattern.lower().replace("\\", "/"))

    def skipped(self, text):
        folded = "".join(c.lower() if len(c.lower()) == 1 else c for c in text).replace("\\", "/")
        for expression in self.skip:
            if expression is None:
                return False
            if expression.fullmatch(folded):
                return True
        return False

    def grade(self, path, size, attributes):
        """The report text, and the number of the message that it comes from."""
        name = path.rsplit(b"/", 1)[-1]
        extension = list_text(name.rsplit(b".", 1)[-1] if b"." in name else b"").replace(">", ",")
        if not extension:
            return self._message(NO_EXTENSION)
        if size == 0:
            return self._message(ZERO_BYTES)
        if size < HEADER_BYTES:
            return self._message(TOO_SMALL)
        if attributes >= ENCRYPTED_FROM:
            return self._message(ENCRYPTED)
        terms = self.term_files.get(extension.lower() + ".dat")
        if terms is None and not self.use_common:
            return self._message(UNKNOWN)
        try:
            with open(path, "rb", buffering=0) as file:
                header = file.read(HEADER_BYTES)
        except OSError:
            return self._message(ACCESS_ERROR)
        self.opened += 1
        return self._grade_header(header.ljust(HEADER_BYTES, b" ").translate(LOWER), terms)

    def _grade_header(self, header, terms):
        for line in lines_of(terms or b""):
            fields = fields_of(line)
            outcome = try_record(fields, leading_number(fields[0]) if fields else 0, header)
            if outcome == GIVEN_UP:
                return self._message(UNKNOWN)
            if outcome != MISS:
                return self._message(GOOD)
        if self.use_common:
            found = self._common_header(header, terms is not None)
            if found:
                return found
        return self._message(UNKNOWN if terms is None else CORRUPT)

    def _common_header(self, header, known):
        if not self.common:
            return "", COMMON
        for line in self.common:
            fields = fields_of(line)
            position = plain_number(fields[0]) if fields else 0
            outcome = try_record(fields, position, header)
            if outcome == MISS:
                continue
            if outcome == GIVEN_UP:
                return self._message(UNKNOWN)
            if outcome == BROKEN_HIT or len(fields) < 4:
                return "", COMMON
            separator = " : " if known or position == 0 else ""
            return self.messages[COMMON].rstrip(" ") + separator + page_text(fields[3]).lstrip(" "), COMMON
        return None

    def _message(self, number):
        return self.messages[number], number


# --- a tree ---

def files_of(folder):
    """Every regular file as (path, stat): those of a folder by name, then its subfolders by name."""
    files, folders = [], []
    for entry in os.scandir(folder):
        if entry.is_dir(follow_symlinks=False):
            folders.append(entry.path)
        elif entry.is_file(follow_symlinks=False):
            files.append((entry.path, entry.stat(follow_symlinks=False)))
    yield from sorted(files, key=lambda found: found[0])
    for inner in sorted(folders):
        yield from files_of(inner)


def plain_attributes(path, info):
    read_only = 0 if stat.S_IMODE(info.st_mode) & 0o222 else 1
    hidden = 2 if os.path.basename(path).startswith(b".") else 0
    return 32 + read_only + hidden


def grade_tree(source, rules):
    """The rows of the list as (path, date, size, attributes, result), how many files got each message, how many were skipped."""
    rows, counts, skipped = [], [0] * 10, 0
    for path, info in files_of(os.fsencode(source)):
        text = list_text(path)
        if rules.skipped(text):
            skipped += 1
            continue
        attributes = plain_attributes(path, info)
        result, message = rules.grade(path, info.st_size, attributes)
        counts[message] += 1
        date = time.strftime("%d/%m/%Y", time.localtime(int(info.st_mtime_ns // 10**9)))
        rows.append((text, date, f" {info.st_size}", f" {attributes}", result))
    return rows, counts, skipped
