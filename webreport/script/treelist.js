// The list of rows. Only the rows in view, and some round them, are in the page: a run of a
// million results costs no more than one of fifty.
(function (report) {
    'use strict';

    const { element } = report.dom;
    const overscan = 12;

    // Browsers don't make elements higher than some 30 million pixels.
    const highest = 16000000;

    /// `host` becomes the tree. `actions` has `select(node)`, `toggle(node)`, `isOpen(node)` and
    /// `open(node)`, called when the row is activated.
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

        function rowHeight() {
            return parseFloat(getComputedStyle(host).getPropertyValue('--row')) || 30;
        }

        /// Scrolled pixels for one pixel of rows; below 1 only when the list is higher than can be.
        function scale() {
            return Math.min(1, highest / Math.max(1, rows.length * rowHeight()));
        }

        function firstVisible() {
            return host.scrollTop / scale() / rowHeight();
        }

        function drawRow(index) {
            const node = rows[index];
            const known = drawn.get(node.id);
            const row = known || report.treeRow.buildRow(node, actions.isOpen(node));
            const offset = index * rowHeight() - firstVisible() * rowHeight() + host.scrollTop;
            row.style.transform = 'translateY(' + offset + 'px)';
            row.setAttribute('aria-selected', String(node === current));
            if (!known) {
                drawn.set(node.id, row);
                canvas.append(row);
            }
        }

        function draw() {
            canvas.style.height = rows.length * rowHeight() * scale() + 'px';
            const count = Math.ceil(host.clientHeight / rowHeight());
            const first = Math.max(0, Math.floor(firstVisible()) - overscan);
            const last = Math.min(rows.length - 1, Math.floor(firstVisible()) + count + overscan);
            for (const [id, row] of drawn) {
                const place = places.get(id);
                if (place === undefined || place < first || place > last) {
                    row.remove();
                    drawn.delete(id);
                }
            }
            for (let index = first; index <= last; ++index) drawRow(index);
            markActive();
        }

        function markActive() {
            if (current && drawn.has(current.id))
                host.setAttribute('aria-activedescendant', 'row-' + current.id);
            else host.removeAttribute('aria-activedescendant');
        }

        function setRows(list) {
            rows = list;
            places = new Map(rows.map((node, index) => [node.id, index]));
            drawn.clear();
            canvas.replaceChildren();
            draw();
        }

        function reveal(node) {
            const place = places.get(node.id);
            if (place === undefined) return;
            const height = host.clientHeight / rowHeight();
            const above = place < firstVisible();
            const below = place + 1 > firstVisible() + height;
            if (above || below) {
                const first = above ? place : place + 1 - height;
                host.scrollTop = Math.max(0, first * rowHeight() * scale());
            }
        }

        function setCurrent(node) {
            current = node;
            reveal(node);
            draw();
        }

        /// Moves by rows, as far as there are any.
        function move(by) {
            const place = current ? places.get(current.id) : undefined;
            const target =
                place === undefined ? 0 : Math.min(rows.length - 1, Math.max(0, place + by));
            if (rows[target]) actions.select(rows[target]);
        }

        function nodeAt(event) {
            const row = event.target.closest('.row');
            return row ? rows[places.get(Number(row.dataset.id))] : null;
        }

        host.addEventListener('scroll', draw, { passive: true });
        host.addEventListener('click', (event) => {
            const node = nodeAt(event);
            if (!node) return;
            if (event.target.closest('[data-toggle]')) actions.toggle(node);
            else actions.open(node);
        });
        host.addEventListener('dblclick', (event) => {
            const node = nodeAt(event);
            if (node && !event.target.closest('[data-toggle]')) actions.toggle(node);
        });
        new ResizeObserver(draw).observe(host);

        return {
            setRows,
            setCurrent,
            move,
            pageSize: () => Math.max(1, Math.floor(host.clientHeight / rowHeight()) - 1),
            rows: () => rows,
        };
    }

    report.treeList = { createTreeList };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
