// A result as plain text, as one pastes it into a ticket.
(function (report) {
    'use strict';

    const { locationText, dateTime } = report.format;

    // In bytes: what a person reads in a ticket. The report has the rest.
    const longest = 2048;
    const longestTitle = 300;
    const longestDetail = 400;
    const longestValue = 240;
    const longestRow = 200;
    const keptBefore = 60;
    const mostFrames = 6;
    const mostRows = 4;

    const encoder = new TextEncoder();

    function bytesOf(text) {
        return encoder.encode(text).length;
    }

    function startOf(text, most) {
        return text.length > most ? report.startOf(text, most) + ' …' : text;
    }

    /// The start of the text that fits in so many bytes.
    function fitting(text, most) {
        if (bytesOf(text) <= most) return text;
        let [fits, tooLong] = [0, text.length];
        while (tooLong - fits > 1) {
            const middle = (fits + tooLong) >> 1;
            if (bytesOf(text.slice(0, middle)) <= most - 6) fits = middle;
            else tooLong = middle;
        }
        return report.startOf(text, fits).trimEnd() + '\n[…]';
    }

    /// `most` characters of a value round the first one that differs from the other value.
    function excerpt(text, other, most) {
        if (text.length <= most) return text;
        let same = 0;
        while (same < text.length && text[same] === other[same]) ++same;
        let from = Math.max(0, Math.min(same - keptBefore, text.length - most));
        if (/[\uDC00-\uDFFF]/.test(text[from])) ++from;
        const part = startOf(text.slice(from), most);
        return from > 0 ? '… ' + part : part;
    }

    function indented(text) {
        return text.replace(/^/gm, '    ');
    }

    /// Blanks at the ends of a value and all that can't be seen get a form that survives a ticket;
    /// a value of several lines is below its label.
    function valueText(label, value) {
        if (value === '') return label + ' (empty)';
        const { pieces, unseen } = report.invisibles;
        const visible = pieces(value, unseen)
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
        if (!values) return [];
        const { expected, actual } = values;
        const isCut = Math.max(expected.length, actual.length) > longestValue;
        const { line, column } = report.textDiff.firstDifference(expected, actual);
        return [
            ...(isCut ? [`First difference: line ${line}, character ${column}`] : []),
            valueText('Expected:', excerpt(expected, actual, longestValue)),
            valueText('Actual:  ', excerpt(actual, expected, longestValue)),
        ];
    }

    function rowText(row) {
        return row.cells.map((cell) => cell.text).join(' | ');
    }

    function tableLines(raw) {
        const rows = Array.isArray(raw.tablediff)
            ? report.tableRows.arrangedRows(raw.tablediff)
            : [];
        const lines = rows.slice(0, mostRows).flatMap((row) => {
            const other = row.partner ? rowText(row.partner) : '';
            const text = excerpt(rowText(row), other, longestRow);
            return [...row.before, row.label + ' ' + row.side + ': ' + text];
        });
        const left = Math.max(0, rows.length - mostRows);
        return left > 0 ? [...lines, `[… ${left} more differences]`] : lines;
    }

    /// The values are not said twice.
    function detailLines(raw) {
        if (!raw.detail || report.values.isOnlyValues(raw)) return [];
        const { text, frames } = report.values.splitStack(raw.detail);
        const calls = frames
            .slice(0, mostFrames)
            .map(({ name, file, line }) => '    ' + (name ? name + ' ' : '') + file + ':' + line);
        return [
            ...(text ? ['', startOf(text, longestDetail)] : []),
            ...(calls.length > 0 ? ['', 'Call stack:', ...calls] : []),
        ];
    }

    function field(name, value) {
        return value ? [name + ': ' + value] : [];
    }

    function entryText(run, node) {
        const raw = node.raw;
        return [
            (raw.result || report.marks.typeLabel(node)) + ': ' + startOf(node.name, longestTitle),
            ...field(
                'In',
                [
                    ...(run.parts.length > 1 ? [] : [run.name]),
                    ...report.marks.pathOf(node).map(report.marks.nodeTitle),
                ].join(' › '),
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

    /// The first failure of the attempt that says why.
    function testText(run, node) {
        const attempt = report.why.failedAttempt(node);
        const failures = report.model.entriesWithin(run, attempt, report.model.isFailed);
        const title = report.marks.outcomeOf(node).label + ': ' + report.marks.nodeTitle(node);
        const left = failures.length - 1;
        const more = left > 0 ? [`[… ${left} more ${left === 1 ? 'failure' : 'failures'}]`] : [];
        return [title, ...failures.slice(0, 1).map((one) => entryText(run, one)), ...more].join(
            '\n\n',
        );
    }

    /// With the address of the node at its end; of 2 KB at most, unless the address is longer.
    function failureText(run, node, address) {
        const text = node.kind === 'entry' ? entryText(run, node) : testText(run, node);
        const end = '\n\n' + address + '\n';
        return fitting(text, longest - bytesOf(end)) + end;
    }

    report.failureText = failureText;
})((globalThis.morvexReport = globalThis.morvexReport || {}));
