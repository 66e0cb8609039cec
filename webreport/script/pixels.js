// How many pixels of two pictures differ, and where.
(function (report) {
    'use strict';

    // Differences nearer than this are one region.
    const cellSize = 16;

    /// The bounds of what differs in each cell that has a difference, and their number.
    function differingCells(a, b, width, height) {
        const columns = Math.ceil(width / cellSize);
        const cells = new Map();
        let count = 0;
        for (let y = 0, at = 0; y < height; ++y) {
            for (let x = 0; x < width; ++x, ++at) {
                if (a[at] === b[at]) continue;
                ++count;
                const key = Math.floor(y / cellSize) * columns + Math.floor(x / cellSize);
                const cell = cells.get(key);
                if (cell) join(cell, { left: x, top: y, right: x + 1, bottom: y + 1 });
                else cells.set(key, { left: x, top: y, right: x + 1, bottom: y + 1 });
            }
        }
        return { count, cells, columns };
    }

    function join(bounds, other) {
        bounds.left = Math.min(bounds.left, other.left);
        bounds.top = Math.min(bounds.top, other.top);
        bounds.right = Math.max(bounds.right, other.right);
        bounds.bottom = Math.max(bounds.bottom, other.bottom);
    }

    function neighbours(key, columns) {
        const column = key % columns;
        const keys = [];
        for (let down = -1; down <= 1; ++down)
            for (let across = -1; across <= 1; ++across)
                if (column + across >= 0 && column + across < columns)
                    keys.push(key + down * columns + across);
        return keys;
    }

    function areaOf({ left, top, right, bottom }) {
        return (right - left) * (bottom - top);
    }

    /// `a` and `b` have one number for each pixel. Returns `{count, regions}`, the largest region
    /// first, as `{left, top, right, bottom}`.
    function compare(a, b, width, height) {
        const { count, cells, columns } = differingCells(a, b, width, height);
        const regions = [];
        for (const [key, region] of cells) {
            cells.delete(key);
            const waiting = [key];
            while (waiting.length > 0) {
                for (const next of neighbours(waiting.pop(), columns)) {
                    if (!cells.has(next)) continue;
                    join(region, cells.get(next));
                    cells.delete(next);
                    waiting.push(next);
                }
            }
            regions.push(region);
        }
        return { count, regions: regions.sort((one, two) => areaOf(two) - areaOf(one)) };
    }

    report.pixels = { compare };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
