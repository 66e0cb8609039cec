// Which line, or row of a table, became which.
(function (report) {
    'use strict';

    // Beyond this many comparisons things are paired by their place.
    const mostComparisons = 10000;
    const leastAlike = 0.4;

    function byPlace(a, b) {
        return Array.from({ length: Math.min(a.length, b.length) }, (unused, index) => [
            index,
            index,
        ]);
    }

    /// Pairs `[index in a, index in b]` in the order of both, as alike as can be. `likeness` gives
    /// 0 for wholly different, 1 for equal.
    function pairAlike(a, b, likeness) {
        if (a.length * b.length > mostComparisons) return byPlace(a, b);
        const width = b.length + 1;
        const best = new Float64Array((a.length + 1) * width);
        const alike = new Float64Array((a.length + 1) * width);
        for (let i = a.length - 1; i >= 0; --i) {
            for (let j = b.length - 1; j >= 0; --j) {
                const at = i * width + j;
                const value = likeness(a[i], b[j]);
                alike[at] = value >= leastAlike ? value : 0;
                const without = Math.max(best[at + 1], best[at + width]);
                best[at] = Math.max(without, alike[at] > 0 ? alike[at] + best[at + width + 1] : 0);
            }
        }
        return wayThrough(best, alike, a.length, b.length);
    }

    function wayThrough(best, alike, rows, columns) {
        const width = columns + 1;
        const pairs = [];
        for (let i = 0, j = 0; i < rows && j < columns;) {
            const at = i * width + j;
            if (alike[at] > 0 && best[at] === alike[at] + best[at + width + 1])
                pairs.push([i++, j++]);
            else if (best[at] === best[at + width]) ++i;
            else ++j;
        }
        return pairs;
    }

    report.pairAlike = pairAlike;
})((globalThis.morvexReport = globalThis.morvexReport || {}));
