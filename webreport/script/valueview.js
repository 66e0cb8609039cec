// Expected and actual value side by side, with the characters marked that differ.
(function (report) {
    'use strict';

    const { element } = report.dom;

    // Beyond this the values are shown as plain texts: marks in a text that long help nobody.
    const longestMarked = 50000;

    const visible = new Map([
        [' ', '·'],
        ['\t', '→'],
        ['\n', '⏎\n'],
        ['\r', '␍'],
        ['\u00a0', '⍽'],
    ]);

    /// Blanks that differ would be invisible.
    function visibleBlanks(text) {
        return text.replace(/[ \t\n\r\u00a0]/g, (blank) => visible.get(blank));
    }

    /// `side` is 'expected' or 'actual'.
    function marked(segments, side) {
        return segments.map(({ text, differs }) =>
            differs ? element('mark', { class: side }, visibleBlanks(text)) : text,
        );
    }

    function sideView(label, side, text, segments) {
        const body = segments
            ? element('pre', { class: 'text value ' + side, tabindex: '0' }, marked(segments, side))
            : report.textBlock(text, 'value ' + side);
        return element(
            'div',
            { class: 'side' },
            element('h3', null, label),
            text === '' ? element('p', { class: 'empty' }, '(empty)') : body,
        );
    }

    function valueView({ expected, actual }) {
        const short = expected.length + actual.length <= longestMarked;
        const marks = short ? report.textDiff.diff(expected, actual) : {};
        return element(
            'div',
            { class: 'values' },
            sideView('Expected', 'expected', expected, marks.expected),
            sideView('Actual', 'actual', actual, marks.actual),
        );
    }

    report.valueView = { valueView, marked };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
