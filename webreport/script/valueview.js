// Expected and actual value side by side, with the characters marked that differ.
(function (report) {
    'use strict';

    const { element } = report.dom;
    const { count, counted } = report.format;
    const { invisibles, textDiff } = report;

    // Beyond this lines are marked as a whole, and long equal stretches shown when asked for.
    const longestMarked = 50000;
    const longestShown = 20000;
    const longestEqual = 400;
    const keptOfEqual = 150;

    // In values shorter than this a difference is found at once.
    const longestAtAGlance = 1000;
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

    /// Long equal stretches shrink to both their ends.
    function folded({ text, differs }) {
        if (differs || text.length <= longestEqual) return [{ text, differs }];
        const left = text.length - 2 * keptOfEqual;
        const note = ' [… ' + counted(left, 'equal character', 'equal characters') + ' …] ';
        return [
            {
                text: text.slice(0, keptOfEqual) + note + text.slice(-keptOfEqual),
                differs,
                standsFor: text.length,
            },
        ];
    }

    /// What fits in `room` characters as `{shown, left}`, segments and the number of characters
    /// after them.
    function shortened(segments, room) {
        const shown = [];
        let left = 0;
        for (const segment of segments.flatMap(folded)) {
            const text = room > 0 ? report.startOf(segment.text, room) : '';
            if (text) shown.push({ text, differs: segment.differs });
            else left += segment.standsFor || segment.text.length;
            if (text && text.length < segment.text.length)
                left += segment.text.length - text.length;
            room -= text.length;
        }
        return { shown, left };
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

    function markedCharacters(segments) {
        return new Set(
            segments
                .filter((segment) => segment.differs)
                .flatMap((segment) => [...segment.text.slice(0, 200)]),
        );
    }

    function namesOf(characters) {
        const list = characters.slice(0, mostNamed).map(invisibles.nameOf).join(', ');
        return list ? list + (characters.length > mostNamed ? ', …' : '') : 'none';
    }

    /// Marks may take equal characters in; these are named only where nothing else was marked.
    function namesOfBoth(marks) {
        const [expected, actual] = [marks.expected, marks.actual].map(markedCharacters);
        const own = [
            [...expected].filter((one) => !actual.has(one)),
            [...actual].filter((one) => !expected.has(one)),
        ];
        return (own.flat().length > 0 ? own : [[...expected], [...actual]]).map(namesOf);
    }

    /// Names the characters that make the difference where both values look the same.
    function differenceNote(values, marks) {
        const only = invisibles.onlyDifference(values.expected, values.actual);
        if (!only) return null;
        const [expected, actual] = namesOfBoth(marks);
        const text =
            'The values differ only ' +
            only +
            '. Expected: ' +
            expected +
            '. Actual: ' +
            actual +
            '.';
        return element('p', { class: 'note' }, text);
    }

    /// Where to look in values that are not seen as a whole.
    function placeNote({ expected, actual }) {
        if (expected.length + actual.length <= longestAtAGlance) return null;
        const { line, column } = textDiff.firstDifference(expected, actual);
        const text =
            (isLong({ expected, actual }) ? 'Too long to mark each character by itself. ' : '') +
            'The first difference is in line ' +
            count(line) +
            ', at character ' +
            count(column) +
            '.';
        return element('p', { class: 'note' }, text);
    }

    /// Cuts equal stretches where the other side differs, so that both are folded alike: what is
    /// to be seen beside a difference stays to be seen.
    function aligned(marks) {
        const cuts = new Set();
        for (const segments of [marks.expected, marks.actual]) {
            let equal = 0;
            for (const { text, differs } of segments) {
                if (differs) cuts.add(equal);
                else equal += text.length;
            }
        }
        const places = [...cuts].sort((a, b) => a - b);
        return { expected: cutAt(marks.expected, places), actual: cutAt(marks.actual, places) };
    }

    /// `places` count the equal characters of all segments.
    function cutAt(segments, places) {
        const cut = [];
        let equal = 0;
        let next = 0;
        for (const segment of segments) {
            if (segment.differs) {
                cut.push(segment);
                continue;
            }
            const end = equal + segment.text.length;
            let from = 0;
            for (; next < places.length && places[next] < end; ++next) {
                const to = segment.text.length - (end - places[next]);
                if (to > from) cut.push({ text: segment.text.slice(from, to), differs: false });
                from = Math.max(from, to);
            }
            cut.push({ text: segment.text.slice(from), differs: false });
            equal = end;
        }
        return cut;
    }

    function isLong({ expected, actual }) {
        return expected.length + actual.length > longestMarked;
    }

    function marksOf(values) {
        const compare = isLong(values) ? textDiff.diffRoughly : textDiff.diff;
        return aligned(compare(values.expected, values.actual));
    }

    function notes(values, marks) {
        return [isLong(values) ? null : differenceNote(values, marks), placeNote(values)];
    }

    function moreButton(values, marks, boxes) {
        const amount = count(Math.max(values.expected.length, values.actual.length));
        const more = report.dom.button(
            'Show all ' + amount + ' characters',
            () => {
                for (const [side, box] of Object.entries(boxes)) {
                    box.replaceChildren();
                    report.dom.append(box, marked(marks[side], side));
                }
                more.remove();
                report.showDifference(Object.values(boxes));
            },
            { class: 'more' },
        );
        return more;
    }

    function valueView(values) {
        const marks = marksOf(values);
        const long = isLong(values);
        const box = (side) => {
            const segments = long ? shortened(marks[side], longestShown).shown : marks[side];
            const look = { class: 'text value ' + side, tabindex: '0' };
            return element('pre', look, marked(segments, side));
        };
        const boxes = { expected: box('expected'), actual: box('actual') };
        report.scrollTogether([boxes.expected, boxes.actual]);
        return [
            sides(values, (side) => boxes[side]),
            long ? moreButton(values, marks, boxes) : null,
            notes(values, marks),
        ];
    }

    report.valueView = { valueView, sides, marked, marksOf, shortened, notes };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
