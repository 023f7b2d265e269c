#!/bin/sh
# SPDX-License-Identifier: MIT
# Makes a small tree that looks like a recovered user disk: healthy files of real formats, and one of everything that can be
# wrong with a recovered file. Usage: make_sample_tree.sh FOLDER      (a folder that this script made before is replaced)
set -eu

tree=$1
made="$tree.made"
if [ -d "$tree" ] && [ "$made" -nt "$0" ]; then
    echo "The sample tree $tree is there"
    exit 0
fi
if [ -e "$tree" ] && ! [ -e "$made" ]; then
    echo "$tree exists and is not a sample tree" >&2
    exit 2
fi
echo "Making the sample tree $tree"
rm -rf "$tree" "$made"
mkdir -p "$tree"

# put NAME SIZE HEAD: a file of SIZE bytes that begins with HEAD (printf escapes, octal) and goes on with zero bytes.
put() {
    mkdir -p "$tree/$(dirname "$1")"
    # shellcheck disable=SC2059  # the head is a format on purpose
    printf "$3" >"$tree/$1"
    truncate -s "$2" "$tree/$1"
}

# fill NAME SIZE TEXT: a file of SIZE bytes that repeats TEXT.
fill() {
    mkdir -p "$tree/$(dirname "$1")"
    yes "$3" | head -c "$2" >"$tree/$1"
}

png='\211PNG\r\n\032\n\000\000\000\rIHDR\000\000\000\001\000\000\000\001\010\002\000\000\000\220wS\336'
jpeg='\377\330\377\340\000\020JFIF\000\001\001\001\000H\000H\000\000\377\333\000C\000'
gif='GIF89a\001\000\001\000\200\000\000\000\000\000\377\377\377,\000\000\000\000\001\000\001\000\000\002\002D\001\000;'
bmp='BM\066\003\000\000\000\000\000\000\066\000\000\000\050\000\000\000\020\000\000\000\020\000\000\000\001\000\030\000'
tiff='II*\000\010\000\000\000\001\000\000\001\003\000\001\000\000\000\001\000\000\000'
wav='RIFF\044\020\000\000WAVEfmt \020\000\000\000\001\000\001\000\104\254\000\000\210\130\001\000\002\000\020\000data\000\020\000\000'
avi='RIFF\370\017\000\000AVI LIST\300\000\000\000hdrlavih8\000\000\000'
mp3='ID3\003\000\000\000\000\017vTIT2\000\000\000\013\000\000\000Untitled'
mp4='\000\000\000\030ftypmp42\000\000\000\000mp42isom\000\000\000\010free'
ole='\320\317\021\340\241\261\032\341\000\000\000\000\000\000\000\000\000\000\000\000\000\000\000\000\076\000\003\000\376\377\011\000'
zip='PK\003\004\024\000\000\000\000\000\000\000\041\000\000\000\000\000\000\000\000\000\000\000\000\000'
docx='PK\003\004\024\000\006\000\010\000\000\000\041\000\000\000\000\000\000\000\000\000\000\000\000\000\023\000\000\000[Content_Types].xml'
pdf='%%PDF-1.4\n1 0 obj\n<</Type/Catalog/Pages 2 0 R>>\nendobj\n2 0 obj\n<</Type/Pages/Kids[]/Count 0>>\nendobj\n'
rtf='{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Arial;}}\\f0 Minutes of the meeting\\par}\n'
exe='MZ\220\000\003\000\000\000\004\000\000\000\377\377\000\000\270\000\000\000\000\000\000\000@\000\000\000'
psd='8BPS\000\001\000\000\000\000\000\000\000\003\000\000\000\001\000\000\000\001\000\010\000\003'
sevenzip='7z\274\257\047\034\000\004\000\000\000\000\000\000\000\000'
rar='Rar!\032\007\000\317\220s\000\000\r\000\000\000\000\000\000\000'
sqlite='SQLite format 3\000\020\000\001\001\000@  '
html='<!DOCTYPE html>\n<html><head><title>Offers</title></head><body></body></html>\n'
xml='<?xml version="1.0" encoding="UTF-8"?>\n<orders></orders>\n'

# Healthy files.
put 'Pictures/Summer/beach.jpg' 48211 "$jpeg"
put 'Pictures/Summer/IMG_0042.JPG' 131072 "$jpeg"
put 'Pictures/logo.png' 2214 "$png"
put 'Pictures/button.gif' 640 "$gif"
put 'Pictures/scan.bmp' 822 "$bmp"
put 'Pictures/scan.tif' 9000 "$tiff"
put 'Pictures/poster.psd' 40960 "$psd"
put 'Music/theme.mp3' 20480 "$mp3"
put 'Music/click.wav' 4140 "$wav"
put 'Video/clip.avi' 65536 "$avi"
put 'Video/clip.mp4' 65536 "$mp4"
put 'Documents/contract.pdf' 5120 "$pdf"
put 'Documents/minutes.rtf' 1024 "$rtf"
put 'Documents/letter.doc' 19456 "$ole"
put 'Documents/accounts.xls' 23552 "$ole"
put 'Documents/thesis.docx' 30000 "$docx"
put 'Documents/orders.xml' 900 "$xml"
put 'Documents/offers.html' 700 "$html"
put 'Archive/backup.zip' 70000 "$zip"
put 'Archive/backup.7z' 70000 "$sevenzip"
put 'Archive/backup.rar' 70000 "$rar"
put 'Programs/setup.exe' 90112 "$exe"
put 'Programs/library.db' 8192 "$sqlite"
tar -C "$tree" -cf "$tree/Archive/documents.tar" Documents
gzip -nc "$tree/Archive/documents.tar" >"$tree/Archive/documents.tar.gz"

# The recovery put other data into these.
put 'Pictures/Summer/IMG_0043.jpg' 51200 ''
fill 'Pictures/Summer/IMG_0044.jpg' 51200 'BAD SECTOR'
fill 'Documents/report.pdf' 8192 'the text of some other file'
put 'Video/lost.avi' 4096 "$wav"

# Healthy, but under a wrong name: common headers tell what they are.
put 'Recovered/FILE0001.CHK' 5120 "$pdf"
put 'Documents/photo of the house.doc' 48211 "$jpeg"

# What the database does not know, and what cannot be tested.
fill 'Recovered/notes.qx7' 3000 'nobody knows this ending'
fill 'Recovered/FILE0002' 3000 'no ending at all'
put 'Recovered.old/FILE0003' 3000 "$png"
put 'Documents/empty.docx' 0 ''
fill 'Documents/todo.txt' 37 'call back'
put 'Pictures/limit-511.png' 511 "$png"
put 'Pictures/limit-512.png' 512 "$png"

# Names that a list has to carry.
put 'Documents/Smith, John - offer.pdf' 5120 "$pdf"
put 'Documents/profit > loss.xls' 23552 "$ole"
put 'Documents/ÜBERSICHT für März.doc' 19456 "$ole"
put "Documents/$(printf 'broken \344 name').doc" 19456 "$ole"
put 'Documents/-draft.rtf' 1024 "$rtf"

# Nobody wants these in a list, and a link is no file.
put 'Pictures/Thumbs.db' 9728 "$ole"
put 'Pictures/desktop.ini' 600 '[.ShellClassInfo]\r\n'
ln -s ../Documents "$tree/Pictures/link"

: >"$made"
