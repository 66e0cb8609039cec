// Which characters of two texts differ.
(function (report) {
    'use strict';

    // Beyond these the middle of the two texts is marked as a whole: a finer answer would take
    // seconds, and nobody reads it.
    const longestExact = 20000;
    const mostChanges = 600;

    function commonPrefix(a, b) {
        const end = Math.min(a.length, b.length);
        let n = 0;
        while (n < end && a[n] === b[n]) ++n;
        return n;
    }

    function commonSuffix(a, b, from) {
        const end = Math.min(a.length, b.length) - from;
        let n = 0;
        while (n < end && a[a.length - 1 - n] === b[b.length - 1 - n]) ++n;
        return n;
    }

    /// The furthest reaching paths of each number of changes, up to the first that reaches both
    /// ends; null when there are too many changes.
    function shortestPaths(a, b) {
        const reach = new Map([[1, 0]]);
        const trail = [];
        for (let d = 0; d <= mostChanges; ++d) {
            trail.push(new Map(reach));
            for (let k = -d; k <= d; k += 2) {
                const down = k === -d || (k !== d && reach.get(k - 1) < reach.get(k + 1));
                let x = down ? reach.get(k + 1) : reach.get(k - 1) + 1;
                while (x < a.length && x - k < b.length && a[x] === b[x - k]) ++x;
                reach.set(k, x);
                if (x >= a.length && x - k >= b.length) return trail;
            }
        }
        return null;
    }

    /// Marks what the shortest path deletes from `a` and inserts from `b`.
    function walkBack(trail, a, b, marks) {
        let x = a.length;
        let y = b.length;
        for (let d = trail.length - 1; d > 0; --d) {
            const reach = trail[d];
            const k = x - y;
            const down = k === -d || (k !== d && reach.get(k - 1) < reach.get(k + 1));
            const from = down ? reach.get(k + 1) : reach.get(k - 1);
            const fromY = from - (down ? k + 1 : k - 1);
            if (down) marks.b[fromY] = 1;
            else marks.a[from] = 1;
            x = from;
            y = fromY;
        }
    }

    /// Marks all characters when too little is equal for single marks to tell anything.
    function coarsen(marks) {
        const kept = (list) => list.reduce((sum, mark) => sum + (mark ? 0 : 1), 0);
        const longer = Math.max(marks.a.length, marks.b.length);
        if (kept(marks.a) * 3 >= longer) return;
        marks.a.fill(1);
        marks.b.fill(1);
    }

    function middleMarks(a, b) {
        const marks = { a: new Uint8Array(a.length), b: new Uint8Array(b.length) };
        const trail = a.length + b.length <= longestExact ? shortestPaths(a, b) : null;
        if (trail) {
            walkBack(trail, a, b, marks);
            coarsen(marks);
        } else {
            marks.a.fill(1);
            marks.b.fill(1);
        }
        return marks;
    }

    function append(segments, text, differs) {
        const last = segments[segments.length - 1];
        if (!text) return;
        if (last && last.differs === differs) last.text += text;
        else segments.push({ text, differs });
    }

    function segmentsOf(characters, prefix, marks) {
        const segments = [];
        append(segments, characters.slice(0, prefix).join(''), false);
        marks.forEach((mark, index) => append(segments, characters[prefix + index], Boolean(mark)));
        append(segments, characters.slice(prefix + marks.length).join(''), false);
        return segments;
    }

    /// Both texts as lists of `{text, differs}`. Characters are code points: half a surrogate pair
    /// is never marked.
    function diff(expected, actual) {
        const a = Array.from(expected);
        const b = Array.from(actual);
        const prefix = commonPrefix(a, b);
        const suffix = commonSuffix(a, b, prefix);
        const marks = middleMarks(
            a.slice(prefix, a.length - suffix),
            b.slice(prefix, b.length - suffix),
        );
        return { expected: segmentsOf(a, prefix, marks.a), actual: segmentsOf(b, prefix, marks.b) };
    }

    report.textDiff = { diff };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
