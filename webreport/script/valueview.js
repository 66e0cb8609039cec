// Expected and actual value side by side, with the characters marked that differ.
(function (report) {
    'use strict';

    const { element } = report.dom;
    const { count } = report.format;
    const { invisibles, textDiff } = report;

    // Beyond this the values are shown as plain texts: marks in a text that long help nobody.
    const longestMarked = 50000;
    const mostNamed = 8;

    /// Blanks that differ would be invisible.
    function drawn(text) {
        return invisibles
            .pieces(text, invisibles.unseen)
            .map((piece) => (typeof piece === 'string' ? piece : report.dom.drawnCharacter(piece)));
    }

    /// `side` is 'expected' or 'actual'.
    function marked(segments, side) {
        return segments.map(({ text, differs }) =>
            differs ? element('mark', { class: side }, drawn(text)) : text,
        );
    }

    function sideView(label, side, text, content) {
        return element(
            'div',
            { class: 'side' },
            element('h3', null, label),
            text === '' ? element('p', { class: 'empty' }, '(empty)') : content,
        );
    }

    /// `contentOf(side)` gives what is shown of a value that is not empty.
    function sides({ expected, actual }, contentOf) {
        return element(
            'div',
            { class: 'values' },
            sideView('Expected', 'expected', expected, contentOf('expected')),
            sideView('Actual', 'actual', actual, contentOf('actual')),
        );
    }

    function namesOf(segments) {
        const characters = new Set(
            segments
                .filter((segment) => segment.differs)
                .flatMap((segment) => [...segment.text.slice(0, 200)]),
        );
        const list = [...characters].slice(0, mostNamed).map(invisibles.nameOf).join(', ');
        return list ? list + (characters.size > mostNamed ? ', …' : '') : 'none';
    }

    /// Names the characters that make the difference where both values look the same.
    function differenceNote(values, marks) {
        const only = invisibles.onlyDifference(values.expected, values.actual);
        if (!only) return null;
        const text =
            'The values differ only ' +
            only +
            '. Expected: ' +
            namesOf(marks.expected) +
            '. Actual: ' +
            namesOf(marks.actual) +
            '.';
        return element('p', { class: 'note' }, text);
    }

    function unmarkedNote({ expected, actual }) {
        const { line, column } = textDiff.firstDifference(expected, actual);
        const text =
            'Too long to mark what differs. The first difference is in line ' +
            count(line) +
            ', at character ' +
            count(column) +
            '.';
        return element('p', { class: 'note' }, text);
    }

    /// Null for values that are too long to be compared by a reader.
    function marksOf({ expected, actual }) {
        return expected.length + actual.length <= longestMarked
            ? textDiff.diff(expected, actual)
            : null;
    }

    function valueView(values) {
        const marks = marksOf(values);
        const contentOf = (side) =>
            marks
                ? element(
                      'pre',
                      { class: 'text value ' + side, tabindex: '0' },
                      marked(marks[side], side),
                  )
                : report.textBlock(values[side], 'value ' + side);
        return [
            sides(values, contentOf),
            marks ? differenceNote(values, marks) : unmarkedNote(values),
        ];
    }

    report.valueView = { valueView, sides, marked, marksOf, differenceNote, unmarkedNote };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
