// The parts of a result as they go on paper, where nothing can be scrolled or opened: what is long
// is cut, and says by how much.
(function (report) {
    'use strict';

    const { element } = report.dom;
    const { count, counted } = report.format;
    const { arrangedRows, cellDiffers, columnCount } = report.tableRows;
    const longest = 3000;
    const mostRows = 40;
    const mostColumns = 12;

    function cutNote(left) {
        const text = '… ' + counted(left, 'more character', 'more characters') + ' not printed';
        return element('p', { class: 'note' }, text);
    }

    function textBlock(text, className) {
        const start = text.length > longest ? report.startOf(text, longest) : text;
        const left = text.length - start.length;
        return [
            element('pre', { class: 'text ' + (className || '') }, start),
            left > 0 ? cutNote(left) : null,
        ];
    }

    function markedValue(segments, side) {
        const { shown, left } = report.valueView.shortened(segments, longest);
        const content = report.valueView.marked(shown, side);
        return [
            element('pre', { class: 'text value ' + side }, content),
            left > 0 ? cutNote(left) : null,
        ];
    }

    function valueView(values) {
        const { sides, marksOf, notes } = report.valueView;
        const marks = marksOf(values);
        return [sides(values, (side) => markedValue(marks[side], side)), notes(values, marks)];
    }

    /// The columns that say something: those with a difference, when rows became others.
    function columnsToPrint(rows) {
        const all = [...Array(columnCount(rows)).keys()];
        const differing = all.filter((index) => rows.some((row) => cellDiffers(row, index)));
        const wanted = differing.length > 0 && all.length > mostColumns ? differing : all;
        return wanted.slice(0, mostColumns);
    }

    function tableView(tablediff) {
        const all = arrangedRows(tablediff);
        const rows = all.slice(0, mostRows);
        const columns = columnsToPrint(rows);
        const left = columnCount(all) - columns.length;
        const body = element(
            'tbody',
            null,
            rows.map((row) => report.tableView.rowViews(row, columns)),
        );
        const notes = [
            rows.length < all.length
                ? count(rows.length) + ' of ' + count(all.length) + ' differences'
                : null,
            left > 0 ? counted(left, 'column', 'columns') + ' not printed' : null,
        ].filter(Boolean);
        return [
            report.tableView.tableWith(columns, body),
            notes.length > 0 ? element('p', { class: 'note' }, notes.join(', ') + '.') : null,
        ];
    }

    /// What entryView asks of the views it is made of.
    report.paperViews = {
        textBlock,
        valueView,
        tableView,
        pictures: (uri) => report.pictures.sideBySide(uri),
        video: () => null,
        textFile: () => null,
    };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
