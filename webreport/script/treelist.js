// The list of rows. Only the rows in view, and some round them, are in the page: a run of a
// million results costs no more than one of fifty.
(function (report) {
    'use strict';

    const { element } = report.dom;
    const overscan = 12;

    // Browsers don't make elements higher than some 30 million pixels.
    const highest = 16000000;

    /// `host` becomes the tree. `actions` has `select(node)`, `toggle(node)`, `isOpen(node)` and
    /// `open(node)`, called when the row is activated; and what rows are drawn by:
    /// `addressOf(node)`, `siblings(node)`, `terms()`. `compare(a, b)` orders nodes as rows are.
    function createTreeList(host, actions) {
        const canvas = element('div', { class: 'canvas', role: 'presentation' });
        host.replaceChildren(canvas);
        host.setAttribute('role', 'tree');
        host.setAttribute('aria-label', 'Tests and results');
        host.tabIndex = 0;
        const drawn = new Map();
        let rows = [];
        let places = new Map();
        let current = null;

        // Asking the browser for these makes it lay out the page: not while rows are drawn.
        let rowHeight = 30;
        let viewHeight = 0;

        function measure() {
            rowHeight = parseFloat(getComputedStyle(host).getPropertyValue('--row')) || 30;
            viewHeight = host.clientHeight;
        }

        /// Scrolled pixels for one pixel of rows; below 1 only when the list is higher than can be.
        function scale() {
            return Math.min(1, highest / Math.max(1, rows.length * rowHeight));
        }

        function buildRow(node) {
            const row = report.treeRow.buildRow(
                node,
                actions.isOpen(node),
                actions.addressOf(node),
                actions.siblings(node),
            );
            report.highlight.mark(row.querySelector('.name'), actions.terms());
            drawn.set(node.id, row);
            return row;
        }

        /// `shift` is where row 0 stands on the canvas.
        function drawRow(index, shift, added) {
            const node = rows[index];
            const known = drawn.get(node.id);
            const row = known || buildRow(node);
            row.style.transform = 'translateY(' + (shift + index * rowHeight) + 'px)';
            row.setAttribute('aria-selected', String(node === current));
            if (!known) added.push(row);
        }

        function dropRowsOutside(first, last) {
            for (const [id, row] of drawn) {
                const place = places.get(id);
                if (place !== undefined && place >= first && place <= last) continue;
                row.remove();
                drawn.delete(id);
            }
        }

        function draw() {
            const top = host.scrollTop;
            const start = top / scale() / rowHeight;
            const first = Math.max(0, Math.floor(start) - overscan);
            const visible = Math.ceil(viewHeight / rowHeight);
            const last = Math.min(rows.length - 1, Math.floor(start) + visible + overscan);
            const added = [];
            dropRowsOutside(first, last);
            for (let index = first; index <= last; ++index)
                drawRow(index, top - start * rowHeight, added);
            canvas.append(...added);
            markActive();
        }

        function markActive() {
            if (current && drawn.has(current.id))
                host.setAttribute('aria-activedescendant', 'row-' + current.id);
            else host.removeAttribute('aria-activedescendant');
        }

        function setCanvas() {
            canvas.style.height = rows.length * rowHeight * scale() + 'px';
        }

        function setRows(list) {
            rows = list;
            places = new Map(rows.map((node, index) => [node.id, index]));
            drawn.clear();
            canvas.replaceChildren();
            setCanvas();
            draw();
        }

        function reveal(node) {
            const place = places.get(node.id);
            if (place === undefined || viewHeight === 0) return;
            const start = host.scrollTop / scale() / rowHeight;
            const height = viewHeight / rowHeight;
            const above = place < start;
            const below = place + 1 > start + height;
            if (above || below) {
                const first = above ? place : place + 1 - height;
                host.scrollTop = Math.max(0, first * rowHeight * scale());
            }
        }

        function setCurrent(node) {
            current = node;
            reveal(node);
            draw();
        }

        /// The row that moving by `by` rows leads to from a node that has none: the nearest one in
        /// the order of the list.
        function placeFrom(node, by) {
            if (by > 0) {
                const next = rows.findIndex((one) => actions.compare(one, node) > 0);
                return next < 0 ? rows.length - 1 : next + by - 1;
            }
            const after = rows.findLastIndex((one) => actions.compare(one, node) < 0);
            return Math.max(0, after) + by + 1;
        }

        /// Moves by rows, as far as there are any.
        function move(by) {
            const place = places.get(current.id);
            const target = place === undefined ? placeFrom(current, by) : place + by;
            const row = rows[Math.min(rows.length - 1, Math.max(0, target))];
            if (row) actions.select(row);
        }

        function nodeAt(event) {
            const row = event.target.closest('.row');
            return row ? rows[places.get(Number(row.dataset.id))] : null;
        }

        function isForBrowser(event) {
            return event.ctrlKey || event.metaKey || event.shiftKey;
        }

        function layOut() {
            const wasHidden = viewHeight === 0;
            measure();
            setCanvas();
            if (wasHidden && current) reveal(current);
            draw();
        }

        host.addEventListener('scroll', draw, { passive: true });
        host.addEventListener('click', (event) => {
            const node = nodeAt(event);
            if (!node || isForBrowser(event)) return;
            event.preventDefault();
            if (event.target.closest('[data-toggle]')) actions.toggle(node);
            else actions.open(node);
        });
        // The focus is the list's: a row goes when it is drawn again.
        host.addEventListener('mousedown', (event) => {
            if (event.button !== 0 || !event.target.closest('.row')) return;
            event.preventDefault();
            host.focus({ preventScroll: true });
        });
        host.addEventListener('dblclick', (event) => {
            const node = nodeAt(event);
            if (node && !event.target.closest('[data-toggle]')) actions.toggle(node);
        });
        measure();
        new ResizeObserver(layOut).observe(host);

        return {
            setRows,
            setCurrent,
            move,
            pageSize: () => Math.max(1, Math.floor(viewHeight / rowHeight) - 1),
            rows: () => rows,
        };
    }

    report.treeList = { createTreeList };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
