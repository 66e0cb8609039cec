"""Writes a workbook with one of the programs that people use, and prints what it holds.

usage: makeworkbook.py PROGRAM FILE

The output is JSON: by the name of the sheet its rows from A1 on, null for an empty cell. A date is
{"date": serial number}, a formula {"formula": result}, with null where the program stores none.
"""

import datetime
import json
import os
import subprocess
import sys
import tempfile

DAY = datetime.date(2024, 2, 29)
DAY_NUMBER = 45351

HEADER = ["name", "amount", "ratio", "in stock", "since", "total", "note"]
ROWS = [
    ["  two  blanks ", 42, 1.5, True, DAY, ("B2*2", 84), "rich text"],
    ["gr\u00fcn & <br>", -7, 1234567.25, False, None, ('"x"&"y"', "xy"), None],
    [None] * 7,
    ["after an empty row \U0001f600", 1000000, 0.001, None, None, None, None],
    ["two\nlines", 0, 1e-7, True, DAY, ("1=1", True), '"quoted", a'],
]
SHEETS = {
    "Data": (0, 0, [HEADER] + ROWS),
    "Begins below": (2, 2, [["a", "b"], ["one", 2], [None, "last"]]),
    "Empty": (0, 0, []),
}


def described(value, stores_results):
    if isinstance(value, datetime.date):
        return {"date": DAY_NUMBER}
    if isinstance(value, tuple):
        return {"formula": value[1] if stores_results else None}
    return value


def grid(top, left, rows, stores_results):
    width = left + max((len(row) for row in rows), default=0)
    lines = [[None] * width for _ in range(top)] if rows else []
    return lines + [[None] * left + [described(v, stores_results) for v in row] for row in rows]


def cells(sheets):
    for name, (top, left, rows) in sheets.items():
        for y, row in enumerate(rows):
            for x, value in enumerate(row):
                if value is not None:
                    yield name, top + y, left + x, value


def write_openpyxl(path, sheets):
    import openpyxl

    book = openpyxl.Workbook()
    book.remove(book.active)
    for name in sheets:
        book.create_sheet(name)
    for name, y, x, value in cells(sheets):
        content = "=" + value[0] if isinstance(value, tuple) else value
        book[name].cell(y + 1, x + 1, content)
    book.save(path)
    return False


def write_xlsxwriter(path, sheets):
    import xlsxwriter

    book = xlsxwriter.Workbook(path)
    bold = book.add_format({"bold": True})
    date = book.add_format({"num_format": "yyyy-mm-dd"})
    pages = {name: book.add_worksheet(name) for name in sheets}
    for name, y, x, value in cells(sheets):
        page = pages[name]
        if value == "rich text":
            page.write_rich_string(y, x, bold, "rich", " text")
        elif isinstance(value, tuple):
            page.write_formula(y, x, "=" + value[0], None, value[1])
        elif isinstance(value, datetime.date):
            page.write_datetime(y, x, value, date)
        elif isinstance(value, str):
            page.write_string(y, x, value)
        else:
            page.write(y, x, value)
    book.close()
    return True


def write_xlwt(path, sheets):
    import xlwt

    book = xlwt.Workbook()
    bold = xlwt.easyfont("bold on")
    date = xlwt.easyxf(num_format_str="YYYY-MM-DD")
    pages = {name: book.add_sheet(name) for name in sheets}
    for name, y, x, value in cells(sheets):
        page = pages[name]
        if value == "rich text":
            page.write_rich_text(y, x, [("rich", bold), " text"])
        elif isinstance(value, tuple):
            page.write(y, x, xlwt.Formula(value[0]))
        elif isinstance(value, datetime.date):
            page.write(y, x, value, date)
        else:
            page.write(y, x, value)
    book.save(path)
    return False


def write_ssconvert(path, sheets, exporter):
    with tempfile.TemporaryDirectory() as directory:
        source = os.path.join(directory, "source.xlsx")
        write_xlsxwriter(source, sheets)
        subprocess.run(
            ["ssconvert", "--recalc", "--export-type=" + exporter, source, path],
            check=True,
            stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL,
        )
    return True


PROGRAMS = {
    "openpyxl": write_openpyxl,
    "xlsxwriter": write_xlsxwriter,
    "xlwt": write_xlwt,
    "gnumeric-xlsx": lambda *args: write_ssconvert(*args, "Gnumeric_Excel:xlsx2"),
    "gnumeric-biff8": lambda *args: write_ssconvert(*args, "Gnumeric_Excel:excel_biff8"),
    "gnumeric-both": lambda *args: write_ssconvert(*args, "Gnumeric_Excel:excel_dsf"),
    "gnumeric-biff7": lambda *args: write_ssconvert(*args, "Gnumeric_Excel:excel_biff7"),
}


def main():
    program, path = sys.argv[1:]
    stores_results = PROGRAMS[program](path, SHEETS)
    print(json.dumps({name: grid(*place, stores_results) for name, place in SHEETS.items()}))


main()
