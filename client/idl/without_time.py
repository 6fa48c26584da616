#!/usr/bin/env python3
"""Takes the time of its making out of a type library, so that the same sources give the same file.

  without_time.py LIBRARY.tlb

The compiler writes it twice: as text behind its own name, and as a number (type VT_UI4).
"""
import re
import struct
import sys
import time

TEXT = re.compile(rb'Created by WIDL version [0-9.]+ at (.{24})\n')
BEGINNING = b'Thu Jan  1 00:00:00 1970'
VT_UI4 = struct.pack('<H', 19)


def main(path):
    with open(path, 'rb') as library:
        data = library.read()
    found = TEXT.search(data)
    if not found:
        sys.exit(f'{path}: no time found')
    made = int(time.mktime(time.strptime(found.group(1).decode())))
    data = data[:found.start(1)] + BEGINNING + data[found.end(1):]
    # the two are taken one after the other, in different seconds at times
    for second in (made, made - 1, made + 1):
        number = VT_UI4 + struct.pack('<I', second)
        if data.count(number) == 1:
            break
    else:
        sys.exit(f'{path}: the time as a number was not found')
    data = data.replace(number, VT_UI4 + struct.pack('<I', 0))
    with open(path, 'wb') as library:
        library.write(data)


if __name__ == '__main__':
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    main(sys.argv[1])
