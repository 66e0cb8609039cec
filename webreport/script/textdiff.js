// Which characters of two texts differ: lines are compared first, then the words of lines that
// became one another, and characters only within words.
(function (report) {
    'use strict';

    const { sequenceDiff, pairAlike } = report;

    const linesOf = (text) => text.match(/[^\n]*\n|[^\n]+$/g) || [];
    // A number is one word with the separators in it.
    const wordsOf = (text) =>
        text.match(/\p{N}[\p{N}.,:]*\p{N}(?![\p{L}_])|[\p{L}\p{N}_]+|\s+|[^]/gu) || [];

    /// The items of both lists as numbers, equal ones as equal numbers.
    function numbered(a, b) {
        const known = new Map();
        const number = (item) => {
            if (!known.has(item)) known.set(item, known.size);
            return known.get(item);
        };
        return [Int32Array.from(a, number), Int32Array.from(b, number)];
    }

    function compare(a, b) {
        return sequenceDiff(...numbered(a, b));
    }

    /// Calls `same(aItems, bItems)` and `changed(aItems, bItems)` for each stretch, in order.
    function eachStretch(a, b, marks, same, changed) {
        for (let i = 0, j = 0; i < a.length || j < b.length;) {
            const [iFrom, jFrom] = [i, j];
            while (i < a.length && j < b.length && !marks.a[i] && !marks.b[j]) {
                ++i;
                ++j;
            }
            if (i > iFrom) same(a.slice(iFrom, i), b.slice(jFrom, j));
            const [iChanged, jChanged] = [i, j];
            while (i < a.length && marks.a[i]) ++i;
            while (j < b.length && marks.b[j]) ++j;
            if (i > iChanged || j > jChanged) changed(a.slice(iChanged, i), b.slice(jChanged, j));
        }
    }

    /// Collects `{text, differs}`.
    class Segments {
        constructor() {
            this.list = [];
        }

        add(text, differs) {
            const last = this.list[this.list.length - 1];
            if (!text) return;
            if (last && last.differs === differs) last.text += text;
            else this.list.push({ text, differs });
        }

        addAll(items, marks) {
            items.forEach((item, index) => this.add(item, Boolean(marks && marks[index])));
        }
    }

    /// Whether too little is equal for single marks to say anything.
    function isHopeless(a, b, marks) {
        const kept = marks.a.reduce((sum, mark, index) => sum + (mark ? 0 : a[index].length), 0);
        const lengthOf = (items) => items.reduce((sum, item) => sum + item.length, 0);
        return kept * 3 < Math.max(lengthOf(a), lengthOf(b));
    }

    /// Characters are code points: half a surrogate pair is never marked.
    function diffWord(sides, expected, actual) {
        const a = Array.from(expected);
        const b = Array.from(actual);
        const marks = compare(a, b);
        const whole = isHopeless(a, b, marks);
        sides.expected.addAll(whole ? [expected] : a, whole ? [1] : marks.a);
        sides.actual.addAll(whole ? [actual] : b, whole ? [1] : marks.b);
    }

    function diffWords(sides, expected, actual) {
        const a = wordsOf(expected);
        const b = wordsOf(actual);
        const same = (items) => {
            sides.expected.addAll(items);
            sides.actual.addAll(items);
        };
        eachStretch(a, b, compare(a, b), same, (left, right) =>
            diffWord(sides, left.join(''), right.join('')),
        );
    }

    /// 0 for lines without a common word, 1 for lines of the same words.
    function likeness(left, right) {
        const words = new Set(wordsOf(left).filter((word) => /\S/.test(word)));
        const others = new Set(wordsOf(right).filter((word) => /\S/.test(word)));
        const common = [...words].filter((word) => others.has(word)).length;
        return (2 * common) / Math.max(1, words.size + others.size);
    }

    function pairsOf(left, right) {
        return left.length === 1 && right.length === 1
            ? [[0, 0]]
            : pairAlike(left, right, likeness);
    }

    function diffLines(sides, left, right) {
        let [i, j] = [0, 0];
        const upTo = (iEnd, jEnd) => {
            for (; i < iEnd; ++i) sides.expected.add(left[i], true);
            for (; j < jEnd; ++j) sides.actual.add(right[j], true);
        };
        for (const [pairI, pairJ] of pairsOf(left, right)) {
            upTo(pairI, pairJ);
            diffWords(sides, left[i++], right[j++]);
        }
        upTo(left.length, right.length);
    }

    function commonStart(a, b) {
        const end = Math.min(a.length, b.length);
        let at = 0;
        while (at < end && a[at] === b[at]) ++at;
        return /[\uD800-\uDBFF]/.test(a[at - 1]) ? at - 1 : at;
    }

    /// All from the first to the last character that differs.
    function diffRange(sides, left, right) {
        const [a, b] = [left.join(''), right.join('')];
        const from = commonStart(a, b);
        let [aEnd, bEnd] = [a.length, b.length];
        while (aEnd > from && bEnd > from && a[aEnd - 1] === b[bEnd - 1]) {
            --aEnd;
            --bEnd;
        }
        if (/[\uDC00-\uDFFF]/.test(a[aEnd])) {
            ++aEnd;
            ++bEnd;
        }
        for (const [side, text, end] of [
            [sides.expected, a, aEnd],
            [sides.actual, b, bEnd],
        ]) {
            side.add(text.slice(0, from), false);
            side.add(text.slice(from, end), true);
            side.add(text.slice(end), false);
        }
    }

    /// Both texts as lists of `{text, differs}`; `changed` compares lines that became others.
    function compareLines(expected, actual, changed) {
        const a = linesOf(expected);
        const b = linesOf(actual);
        const sides = { expected: new Segments(), actual: new Segments() };
        const same = (items) => {
            sides.expected.addAll(items);
            sides.actual.addAll(items);
        };
        eachStretch(a, b, compare(a, b), same, (left, right) => changed(sides, left, right));
        return { expected: sides.expected.list, actual: sides.actual.list };
    }

    function diff(expected, actual) {
        return compareLines(expected, actual, diffLines);
    }

    /// Like diff, but marks whole lines, or what is between their common ends. For texts of any
    /// length.
    function diffRoughly(expected, actual) {
        return compareLines(expected, actual, diffRange);
    }

    /// Line and column, from 1, of the first character that differs.
    function firstDifference(expected, actual) {
        const before = expected.slice(0, commonStart(expected, actual)).split('\n');
        return { line: before.length, column: before[before.length - 1].length + 1 };
    }

    report.textDiff = { diff, diffRoughly, firstDifference };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
