// The differences of two tables as rows, the new form of a row after the old one.
(function (report) {
    'use strict';

    // On which side each kind of difference is.
    const sides = new Map([
        ['deletion', 'expected'],
        ['insertion', 'actual'],
        ['context', 'both'],
    ]);

    function cellOf(cell) {
        const values = new Map(
            ((cell && cell.properties) || []).map((one) => [one.name, String(one.value)]),
        );
        return { text: values.get('text') || '', color: values.get('backgroundColor') || '' };
    }

    /// Numbers in the data count from 0, in what a person reads from 1.
    function labelOf(type, value) {
        if (type === 'column') return 'Column ' + (value.index + 1);
        if (type === 'cell') return 'Row ' + (value.row + 1) + ', column ' + (value.column + 1);
        return 'Row ' + (value.line === undefined ? '?' : value.line + 1);
    }

    /// Differences as `{side, label, cells}`, with `{text, color}` for each cell, in the order of
    /// the data.
    function rowsOf(tablediff) {
        return tablediff.map((difference) => {
            const value = difference.diffValue || {};
            const cells = value.cells || (value.properties ? [value] : []);
            const side = sides.get(difference.elementType) || 'both';
            return { side, label: labelOf(difference.diffType, value), cells: cells.map(cellOf) };
        });
    }

    function makePartners(expected, actual) {
        expected.partner = actual;
        actual.partner = expected;
    }

    function isSingle(row) {
        return !row.partner;
    }

    function differs(cell, other) {
        if (!cell || !other) return cell !== other;
        return other.text !== cell.text || other.color !== cell.color;
    }

    /// The share of equal cells.
    function likeness(row, other) {
        const equal = row.cells.filter((cell, index) => !differs(cell, other.cells[index]));
        return equal.length / Math.max(1, row.cells.length, other.cells.length);
    }

    function pairByLabel(expected, actual, fits) {
        const waiting = new Map(expected.filter(isSingle).map((row) => [row.label, row]));
        for (const row of actual.filter(isSingle)) {
            const partner = waiting.get(row.label);
            if (!partner || !fits(partner, row)) continue;
            waiting.delete(row.label);
            makePartners(partner, row);
        }
    }

    /// Rows of equal labels belong together, and of the others those that are alike. Nothing in
    /// common is enough for equal labels only where there is no better partner.
    function pairRows(rows) {
        const expected = rows.filter((row) => row.side === 'expected');
        const actual = rows.filter((row) => row.side === 'actual');
        pairByLabel(expected, actual, (row, other) => likeness(row, other) > 0);
        const [left, right] = [expected.filter(isSingle), actual.filter(isSingle)];
        for (const [i, j] of report.pairAlike(left, right, likeness))
            if (likeness(left[i], right[j]) > 0) makePartners(left[i], right[j]);
        pairByLabel(expected, actual, () => true);
    }

    function endOfChange(rows, from) {
        let end = from;
        while (end < rows.length && rows[end].side !== 'both') ++end;
        return end;
    }

    /// Rows of `tablediff` in the order in which to show them; those that are two forms of one row
    /// have each other as `partner`.
    function arrangedRows(tablediff) {
        const rows = rowsOf(tablediff);
        const arranged = new Set();
        for (let at = 0; at < rows.length;) {
            const end = endOfChange(rows, at);
            pairRows(rows.slice(at, end));
            at = Math.max(end, at + 1);
        }
        for (const row of rows) {
            const pair = row.side === 'actual' ? [row.partner, row] : [row, row.partner];
            for (const one of pair) if (one) arranged.add(one);
        }
        return [...arranged];
    }

    function cellDiffers(row, index) {
        return Boolean(row.partner) && differs(row.cells[index], row.partner.cells[index]);
    }

    function columnCount(rows) {
        return rows.reduce((most, row) => Math.max(most, row.cells.length), 0);
    }

    report.tableRows = { rowsOf, arrangedRows, cellDiffers, columnCount };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
