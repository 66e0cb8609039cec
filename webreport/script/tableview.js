// The differences of two tables as a table.
(function (report) {
    'use strict';

    const { element, button } = report.dom;
    const step = 200;

    // On which side each kind of difference stands.
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

    /// Differences as `{side, label, cells}`, with `{text, color}` for each cell.
    function rowsOf(tablediff) {
        return tablediff.map((difference) => {
            const value = difference.diffValue || {};
            const cells = value.cells || (value.properties ? [value] : []);
            const side = sides.get(difference.elementType) || 'both';
            return { side, label: labelOf(difference.diffType, value), cells: cells.map(cellOf) };
        });
    }

    function endOfSide(rows, from, side) {
        let end = from;
        while (end < rows.length && rows[end].side === side) ++end;
        return end;
    }

    /// A changed row is a deletion with an insertion behind it: of equal labels, the cells of one
    /// are compared with those of the other.
    function pairRows(rows) {
        for (let at = 0; at < rows.length;) {
            const inserted = endOfSide(rows, at, 'expected');
            const end = endOfSide(rows, inserted, 'actual');
            const waiting = new Map(rows.slice(at, inserted).map((row) => [row.label, row]));
            for (const row of rows.slice(inserted, end)) {
                const partner = waiting.get(row.label);
                if (!partner) continue;
                waiting.delete(row.label);
                partner.partner = row;
                row.partner = partner;
            }
            at = Math.max(end, at + 1);
        }
        return rows;
    }

    function swatch(color) {
        if (!/^#([0-9a-f]{6}|[0-9a-f]{8})$/i.test(color))
            return color ? element('span', { class: 'kind' }, color) : null;
        const mark = element('span', { class: 'swatch', title: color });
        mark.style.backgroundColor =
            color.length === 9 ? '#' + color.slice(3) + color.slice(1, 3) : color;
        return [mark, element('span', { class: 'kind' }, color)];
    }

    function cellText(row, cell, other) {
        if (!other || other.text === cell.text || cell.text.length > 2000) return cell.text;
        const [expected, actual] =
            row.side === 'expected' ? [cell.text, other.text] : [other.text, cell.text];
        return report.valueView.marked(report.textDiff.diff(expected, actual)[row.side], row.side);
    }

    function cellView(row, cell, index) {
        const other = row.partner && row.partner.cells[index];
        const differs =
            row.partner && (!other || other.text !== cell.text || other.color !== cell.color);
        return element(
            'td',
            { class: differs ? 'differs' : null },
            cellText(row, cell, other),
            swatch(cell.color),
        );
    }

    function rowView(row) {
        return element(
            'tr',
            { class: row.side },
            element('th', { scope: 'row' }, row.label),
            element('td', { class: 'side' }, row.side),
            row.cells.map((cell, index) => cellView(row, cell, index)),
        );
    }

    function headOf(rows) {
        const columns = rows.reduce((most, row) => Math.max(most, row.cells.length), 0);
        const heads = Array.from({ length: columns }, (unused, index) =>
            element('th', { scope: 'col' }, String(index + 1)),
        );
        return element(
            'thead',
            null,
            element(
                'tr',
                null,
                element('th', { scope: 'col' }, 'Where'),
                element('th', { scope: 'col' }, 'Side'),
                heads,
            ),
        );
    }

    function tableView(tablediff) {
        const rows = pairRows(rowsOf(tablediff));
        const body = element('tbody');
        const more = button('', () => grow(), { class: 'more' });
        function grow() {
            report.dom.append(
                body,
                rows.slice(body.rows.length, body.rows.length + step).map(rowView),
            );
            more.hidden = body.rows.length === rows.length;
            more.textContent = 'Show more of ' + report.format.count(rows.length) + ' differences';
        }
        grow();
        const table = element('table', { class: 'tablediff' }, headOf(rows), body);
        return [
            element(
                'div',
                {
                    'class': 'scroll',
                    'tabindex': '0',
                    'role': 'group',
                    'aria-label': 'Table differences',
                },
                table,
            ),
            more,
        ];
    }

    report.tableDiff = { rowsOf, pairRows, tableView };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
