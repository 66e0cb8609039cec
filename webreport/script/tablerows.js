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
    function labelOf(type, value, line) {
        if (type === 'column') return 'Column ' + (value.index + 1);
        if (type === 'cell') return 'Row ' + (value.row + 1) + ', column ' + (value.column + 1);
        return 'Row ' + (line === undefined ? '?' : line + 1);
    }

    /// Differences as `{side, label, place, cells, equal}`, with `{text, color}` for each cell, in
    /// the order of the data. `label` has the number that the row has in its own table, `place` the
    /// one by which the data pairs it; for `equal` see rowNumbers.
    function rowsOf(tablediff) {
        const numbers = report.rowNumbers(tablediff);
        return tablediff.map((difference, at) => {
            const { diffType, elementType, diffValue: value = {} } = difference;
            const { line, equal } = numbers[at];
            const cells = value.cells || (value.properties ? [value] : []);
            return {
                side: sides.get(elementType) || 'both',
                label: labelOf(diffType, value, line),
                place: labelOf(diffType, value, value.line),
                cells: cells.map(cellOf),
                equal,
            };
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

    function pairByPlace(expected, actual, fits) {
        const waiting = new Map(expected.filter(isSingle).map((row) => [row.place, row]));
        for (const row of actual.filter(isSingle)) {
            const partner = waiting.get(row.place);
            if (!partner || !fits(partner, row)) continue;
            waiting.delete(row.place);
            makePartners(partner, row);
        }
    }

    /// Rows of equal places belong together, and of the others those that are alike. Nothing in
    /// common is enough for equal places only where there is no better partner.
    function pairRows(rows) {
        const expected = rows.filter((row) => row.side === 'expected');
        const actual = rows.filter((row) => row.side === 'actual');
        pairByPlace(expected, actual, (row, other) => likeness(row, other) > 0);
        const [left, right] = [expected.filter(isSingle), actual.filter(isSingle)];
        for (const [i, j] of report.pairAlike(left, right, likeness))
            if (likeness(left[i], right[j]) > 0) makePartners(left[i], right[j]);
        pairByPlace(expected, actual, () => true);
    }

    function endOfChange(rows, from) {
        let end = from;
        while (end < rows.length && rows[end].side !== 'both') ++end;
        return end;
    }

    function rangeOf(first, count) {
        return first + 1 + (count > 1 ? '–' + (first + count) : '');
    }

    /// Says what the data left out.
    function equalRows({ count, expected, actual }) {
        const moved = expected === actual ? '' : ' (actual ' + rangeOf(actual, count) + ')';
        const verb = count > 1 ? 'are' : 'is';
        return `${count > 1 ? 'Rows' : 'Row'} ${rangeOf(expected, count)} ${verb} equal${moved}`;
    }

    /// Rows of `tablediff` in the order in which to show them; those that are two forms of one row
    /// have each other as `partner`. `before` has what is to be said before a row.
    function arrangedRows(tablediff) {
        const rows = rowsOf(tablediff);
        const arranged = new Set();
        for (let at = 0; at < rows.length;) {
            const end = endOfChange(rows, at);
            pairRows(rows.slice(at, end));
            at = Math.max(end, at + 1);
        }
        let before = [];
        for (const row of rows) {
            if (row.equal) before.push(equalRows(row.equal));
            const pair = row.side === 'actual' ? [row.partner, row] : [row, row.partner];
            for (const one of pair.filter((each) => each && !arranged.has(each))) {
                arranged.add(Object.assign(one, { before }));
                before = [];
            }
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
