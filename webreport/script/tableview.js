// The differences of two tables as a table.
(function (report) {
    'use strict';

    const { append, element, button, tableHead } = report.dom;
    const { count } = report.format;
    const { arrangedRows, cellDiffers, columnCount } = report.tableRows;
    const cellsInStep = 1500;

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

    function cellView(row, index) {
        const cell = row.cells[index];
        const look = { class: cellDiffers(row, index) ? 'differs' : null };
        if (!cell) return element('td', look);
        return element(
            'td',
            look,
            cellText(row, cell, row.partner && row.partner.cells[index]),
            swatch(cell.color),
        );
    }

    function equalRows(text, columns) {
        return element(
            'tr',
            { class: 'equal' },
            element('td', { colspan: columns.length + 2 }, element('span', null, text)),
        );
    }

    /// The row, after what is to be said before it.
    function rowViews(row, columns) {
        return [...row.before.map((text) => equalRows(text, columns)), rowView(row, columns)];
    }

    function rowView(row, columns) {
        const isSecond = row.side === 'actual' && row.partner;
        return element(
            'tr',
            { class: row.side + (isSecond ? ' second' : '') },
            element('th', { scope: 'row' }, row.label),
            element('td', { class: 'side' }, row.side),
            columns.map((index) => cellView(row, index)),
        );
    }

    /// A table with the given columns, by index; `body` gets the rows.
    function tableWith(columns, body) {
        const labels = ['Location', 'Side', ...columns.map((index) => String(index + 1))];
        return element('table', { class: 'tablediff' }, tableHead(labels), body);
    }

    /// Brings the first difference into view, beside the columns that stay.
    function showDifference(box) {
        const cell = box.querySelector('td.differs');
        if (!cell || cell.getBoundingClientRect().right <= box.getBoundingClientRect().right)
            return;
        const side = cell.parentNode.querySelector('.side').getBoundingClientRect();
        box.scrollLeft += cell.getBoundingClientRect().left - side.right;
    }

    function tableView(tablediff) {
        const rows = arrangedRows(tablediff);
        const columns = [...Array(columnCount(rows)).keys()];
        const step = Math.max(10, Math.floor(cellsInStep / (columns.length + 2)));
        const body = element('tbody');
        let shown = 0;
        const more = button('', () => grow(), { class: 'more' });
        function grow() {
            const next = rows.slice(shown, shown + step);
            append(
                body,
                next.map((row) => rowViews(row, columns)),
            );
            shown += next.length;
            const left = rows.length - shown;
            more.hidden = left === 0;
            more.textContent =
                'Show ' + count(Math.min(step, left)) + ' more of ' + count(left) + ' differences';
        }
        grow();
        const box = element(
            'div',
            {
                'class': 'scroll',
                'tabindex': '0',
                'role': 'group',
                'aria-label': 'Table differences',
            },
            tableWith(columns, body),
        );
        report.whenShown(box, () => showDifference(box));
        return [box, more];
    }

    report.tableView = { tableView, tableWith, rowViews };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
