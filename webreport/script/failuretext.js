// A result as plain text, as one pastes it into a ticket.
(function (report) {
    'use strict';

    const { locationText, dateTime } = report.format;

    // Trackers refuse much longer texts.
    const longest = 20000;
    const mostFailures = 20;

    function shortened(text) {
        return text.length > longest
            ? report.startOf(text, longest) +
                  '\n[… ' +
                  (text.length - longest) +
                  ' more characters]'
            : text;
    }

    function indented(text) {
        return text.replace(/^/gm, '    ');
    }

    /// Blanks at the ends of a value and all that can't be seen get a form that survives a ticket;
    /// a value of several lines is below its label.
    function valueText(label, value) {
        if (value === '') return label + ' (empty)';
        const { pieces, unseen } = report.invisibles;
        const visible = pieces(shortened(value), unseen)
            .map((piece) => {
                if (typeof piece === 'string') return piece;
                if (piece.code) return '[' + piece.code + ']';
                return piece.symbol === '·' ? ' ' : piece.symbol;
            })
            .join('')
            .replace(/^ +| {2,}| +$/g, (blanks) => '·'.repeat(blanks.length))
            .replace(/⏎\n$/, '⏎');
        return visible.includes('\n')
            ? label + '\n' + indented(visible.replace(/⏎\n/g, '\n'))
            : label + ' ' + visible;
    }

    function valueLines(raw) {
        const values = report.values.comparedValues(raw);
        return values
            ? [valueText('Expected:', values.expected), valueText('Actual:  ', values.actual)]
            : [];
    }

    function tableLines(raw) {
        const rows = Array.isArray(raw.tablediff)
            ? report.tableRows.arrangedRows(raw.tablediff)
            : [];
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

    /// The values are not said twice.
    function detailLines(raw) {
        if (!raw.detail || report.values.isOnlyValues(raw)) return [];
        const { text, frames } = report.values.splitStack(raw.detail);
        const calls = frames.map(
            ({ name, file, line }) => '    ' + (name ? name + ' ' : '') + file + ':' + line,
        );
        return [
            ...(text ? ['', shortened(text)] : []),
            ...(calls.length > 0 ? ['', 'Call stack:', ...calls] : []),
        ];
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
            ...detailLines(raw),
        ].join('\n');
    }

    function testText(run, node) {
        const failures = report.model.entriesWithin(run, node, report.model.isFailed);
        const title = report.marks.outcomeOf(node).label + ': ' + report.marks.nodeTitle(node);
        const texts = failures.slice(0, mostFailures).map((one) => entryText(run, one));
        const left = failures.length - texts.length;
        const more = left > 0 ? ['[… ' + left + ' more failures]'] : [];
        return [title, ...texts, ...more].join('\n\n');
    }

    /// With the address of the node at its end.
    function failureText(run, node, address) {
        const text = node.kind === 'entry' ? entryText(run, node) : testText(run, node);
        return text + '\n\n' + address + '\n';
    }

    report.failureText = failureText;
})((globalThis.morvexReport = globalThis.morvexReport || {}));
