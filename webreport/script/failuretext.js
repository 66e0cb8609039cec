// A result as plain text, as one pastes it into a ticket.
(function (report) {
    'use strict';

    const { locationText, dateTime } = report.format;

    // Trackers refuse much longer texts.
    const longest = 20000;

    function shortened(text) {
        return text.length > longest
            ? text.slice(0, longest) + '\n[… ' + (text.length - longest) + ' more characters]'
            : text;
    }

    function valueLines(raw) {
        const values = report.values.comparedValues(raw);
        return values
            ? ['Expected: ' + shortened(values.expected), 'Actual:   ' + shortened(values.actual)]
            : [];
    }

    function tableLines(raw) {
        const rows = Array.isArray(raw.tablediff) ? report.tableDiff.rowsOf(raw.tablediff) : [];
        return rows
            .slice(0, 200)
            .map(
                (row) =>
                    row.label +
                    ' ' +
                    row.side +
                    ': ' +
                    row.cells.map((cell) => cell.text).join(' | '),
            );
    }

    function field(name, value) {
        return value ? [name + ': ' + value] : [];
    }

    function entryText(run, node) {
        const raw = node.raw;
        return [
            (raw.result || report.marks.typeLabel(node)) + ': ' + shortened(node.name),
            ...field(
                'In',
                [run.name, ...report.marks.pathOf(node).map(report.marks.nodeTitle)].join(' › '),
            ),
            ...field('At', locationText(raw.uri, raw.lineNo)),
            ...field('When', dateTime(raw.time)),
            ...field('Object', raw.objectName),
            ...field('Property', raw.property),
            ...valueLines(raw),
            ...tableLines(raw),
            ...(raw.detail ? ['', shortened(raw.detail)] : []),
        ].join('\n');
    }

    function testText(run, node) {
        const failures = run.nodes
            .slice(node.id + 1, node.end + 1)
            .filter((one) => one.kind === 'entry' && report.model.isFailed(one));
        const title = report.marks.outcomeOf(node).label + ': ' + report.marks.nodeTitle(node);
        return [title, ...failures.slice(0, 20).map((one) => entryText(run, one))].join('\n\n');
    }

    /// With the address of the node at its end.
    function failureText(run, node, address) {
        const text = node.kind === 'entry' ? entryText(run, node) : testText(run, node);
        return text + '\n\n' + address + '\n';
    }

    report.failureText = failureText;
})((globalThis.morvexReport = globalThis.morvexReport || {}));
