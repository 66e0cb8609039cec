// What two sequences of numbers have in common, in memory that grows with their length only.
(function (report) {
    'use strict';

    // With more changes than this between two places the way there is found in steps, each the
    // furthest that was reached: the answer may mark more than it must, but it comes at once.
    const mostChanges = 200;

    /// Furthest x on each diagonal, with room for `mostChanges` on both sides of `centre`.
    function frontier(centre, start) {
        const reach = new Int32Array(2 * mostChanges + 3);
        const at = (k) => k - centre + mostChanges + 1;
        reach[at(centre + 1)] = start;
        return { get: (k) => reach[at(k)], set: (k, x) => (reach[at(k)] = x) };
    }

    /// A place that a shortest way from the start to the end of both ranges goes through. The
    /// ranges begin and end with different items.
    function middle(a, b, { aFrom, aTo, bFrom, bTo }) {
        const first = aFrom - bFrom;
        const last = aTo - bTo;
        const forward = frontier(first, aFrom);
        const backward = frontier(last, aTo);
        backward.set(last - 1, aTo);
        const odd = (first - last) % 2 !== 0;
        for (let d = 0; d <= mostChanges; ++d) {
            for (let k = first - d; k <= first + d; k += 2) {
                const down =
                    k === first - d || (k !== first + d && forward.get(k - 1) < forward.get(k + 1));
                let x = down ? forward.get(k + 1) : forward.get(k - 1) + 1;
                while (x < aTo && x - k < bTo && a[x] === b[x - k]) ++x;
                forward.set(k, x);
                const met = odd && Math.abs(k - last) < d && x >= backward.get(k);
                if (met) return { x, y: x - k };
            }
            for (let k = last - d; k <= last + d; k += 2) {
                const up =
                    k === last + d || (k !== last - d && backward.get(k - 1) < backward.get(k + 1));
                let x = up ? backward.get(k - 1) : backward.get(k + 1) - 1;
                while (x > aFrom && x - k > bFrom && a[x - 1] === b[x - 1 - k]) --x;
                backward.set(k, x);
                const met = !odd && Math.abs(k - first) <= d && x <= forward.get(k);
                if (met) return { x, y: x - k };
            }
        }
        return furthest(forward, first, aTo, bTo);
    }

    function furthest(forward, first, aTo, bTo) {
        let best = { x: 0, y: 0 };
        for (let k = first - mostChanges; k <= first + mostChanges; k += 2) {
            const x = Math.min(forward.get(k), aTo, bTo + k);
            if (x + x - k > best.x + best.y) best = { x, y: x - k };
        }
        return best;
    }

    function trimmed(a, b, { aFrom, aTo, bFrom, bTo }) {
        while (aFrom < aTo && bFrom < bTo && a[aFrom] === b[bFrom]) {
            ++aFrom;
            ++bFrom;
        }
        while (aFrom < aTo && bFrom < bTo && a[aTo - 1] === b[bTo - 1]) {
            --aTo;
            --bTo;
        }
        return { aFrom, aTo, bFrom, bTo };
    }

    /// Marks as `{a, b}`, 1 for each item that only one of the two has.
    function sequenceDiff(a, b) {
        const marks = { a: new Uint8Array(a.length), b: new Uint8Array(b.length) };
        const waiting = [{ aFrom: 0, aTo: a.length, bFrom: 0, bTo: b.length }];
        while (waiting.length > 0) {
            const range = trimmed(a, b, waiting.pop());
            const { aFrom, aTo, bFrom, bTo } = range;
            if (aFrom === aTo || bFrom === bTo) {
                marks.a.fill(1, aFrom, aTo);
                marks.b.fill(1, bFrom, bTo);
                continue;
            }
            const { x, y } = middle(a, b, range);
            waiting.push({ aFrom, aTo: x, bFrom, bTo: y }, { aFrom: x, aTo, bFrom: y, bTo });
        }
        return marks;
    }

    report.sequenceDiff = sequenceDiff;
})((globalThis.morvexReport = globalThis.morvexReport || {}));
