// Two boxes of text that are read beside each other.
(function (report) {
    'use strict';

    // In pixels: what is still to be seen before the first difference.
    const before = 60;

    /// Calls `act` once `node` has a size, which it has not where something else takes its place.
    function whenShown(node, act) {
        const observer = new ResizeObserver(() => {
            if (node.clientHeight === 0) return;
            observer.disconnect();
            act();
        });
        observer.observe(node);
    }

    /// Where the first mark is in the whole of the box; null without one.
    function topOfMark(box) {
        const mark = box.querySelector('mark.expected, mark.actual');
        if (!mark) return null;
        return mark.getBoundingClientRect().top - box.getBoundingClientRect().top + box.scrollTop;
    }

    function showDifference(boxes) {
        const tops = boxes.map(topOfMark).filter((top) => top !== null);
        const top = Math.min(...tops);
        if (tops.length > 0 && top > boxes[0].clientHeight - before)
            for (const box of boxes) box.scrollTop = top - before;
    }

    /// What a box scrolls by itself the other one follows, as far as it goes.
    function scrollTogether(boxes) {
        const known = new Map();
        const follow = (box, other) => {
            if (box.scrollTop === known.get(box)) return;
            known.set(box, box.scrollTop);
            other.scrollTop = box.scrollTop;
            known.set(other, other.scrollTop);
        };
        const [first, second] = boxes;
        first.addEventListener('scroll', () => follow(first, second), { passive: true });
        second.addEventListener('scroll', () => follow(second, first), { passive: true });
        whenShown(first, () => showDifference(boxes));
    }

    report.showDifference = showDifference;
    report.whenShown = whenShown;
    report.scrollTogether = scrollTogether;
})((globalThis.morvexReport = globalThis.morvexReport || {}));
