// The list of rows. Only the rows in view, and some round them, are in the page: a run of a
// million results costs no more than one of fifty.
(function (report) {
    'use strict';

    const { element } = report.dom;
    const overscan = 12;

    // Browsers don't make elements higher than some 30 million pixels.
    const highest = 16000000;

    function isForBrowser(event) {
        return event.ctrlKey || event.metaKey || event.shiftKey;
    }

    class TreeList {
        /// `host` becomes the tree. `actions` has `select(node)`, `toggle(node)`, `isOpen(node)` and
        /// `open(node)`, called when the row is activated; and what rows are drawn by:
        /// `addressOf(node)`, `siblings(node)`, `terms()`. `compare(a, b)` orders nodes as rows are.
        constructor(host, actions) {
            this.host = host;
            this.actions = actions;
            this.canvas = element('div', { class: 'canvas', role: 'presentation' });
            this.drawn = new Map();
            this.rows = [];
            this.places = new Map();
            this.current = null;
            // Asking the browser for these makes it lay out the page: not while rows are drawn.
            this.rowHeight = 30;
            this.viewHeight = 0;
            host.replaceChildren(this.canvas);
            host.setAttribute('role', 'tree');
            host.setAttribute('aria-label', 'Tests and results');
            host.tabIndex = 0;
            this.listen();
            this.measure();
            new ResizeObserver(() => this.layOut()).observe(host);
        }

        listen() {
            const { host } = this;
            host.addEventListener('scroll', () => this.draw(), { passive: true });
            host.addEventListener('click', (event) => this.click(event));
            host.addEventListener('dblclick', (event) => {
                const node = this.nodeAt(event);
                if (node && !event.target.closest('[data-toggle]')) this.actions.toggle(node);
            });
            // The focus is the list's: a row goes when it is drawn again.
            host.addEventListener('mousedown', (event) => {
                if (event.button !== 0 || !event.target.closest('.row')) return;
                event.preventDefault();
                host.focus({ preventScroll: true });
            });
        }

        click(event) {
            const node = this.nodeAt(event);
            if (!node || isForBrowser(event)) return;
            event.preventDefault();
            if (event.target.closest('[data-toggle]')) this.actions.toggle(node);
            else this.actions.open(node);
        }

        nodeAt(event) {
            const row = event.target.closest('.row');
            return row ? this.rows[this.places.get(Number(row.dataset.id))] : null;
        }

        measure() {
            const { host } = this;
            this.rowHeight = parseFloat(getComputedStyle(host).getPropertyValue('--row')) || 30;
            this.viewHeight = host.clientHeight;
        }

        layOut() {
            const wasHidden = this.viewHeight === 0;
            this.measure();
            this.setCanvas();
            if (wasHidden && this.current) this.reveal(this.current);
            this.draw();
        }

        setCanvas() {
            this.canvas.style.height = this.rows.length * this.rowHeight * this.scale() + 'px';
        }

        /// Scrolled pixels for one pixel of rows; below 1 only when the list is higher than can be.
        scale() {
            return Math.min(1, highest / Math.max(1, this.rows.length * this.rowHeight));
        }

        /// The row at the top of the view, with a fraction.
        start() {
            return this.host.scrollTop / this.scale() / this.rowHeight;
        }

        buildRow(node) {
            const { actions } = this;
            const row = report.treeRow.buildRow(
                node,
                actions.isOpen(node),
                actions.addressOf(node),
                actions.siblings(node),
            );
            report.highlight.mark(row.querySelector('.name'), actions.terms());
            this.drawn.set(node.id, row);
            return row;
        }

        /// `shift` is where row 0 is on the canvas.
        drawRow(index, shift, added) {
            const node = this.rows[index];
            const known = this.drawn.get(node.id);
            const row = known || this.buildRow(node);
            row.style.transform = 'translateY(' + (shift + index * this.rowHeight) + 'px)';
            row.setAttribute('aria-selected', String(node === this.current));
            if (!known) added.push(row);
        }

        dropRowsOutside(first, last) {
            for (const [id, row] of this.drawn) {
                const place = this.places.get(id);
                if (place !== undefined && place >= first && place <= last) continue;
                row.remove();
                this.drawn.delete(id);
            }
        }

        draw() {
            const start = this.start();
            const shift = this.host.scrollTop - start * this.rowHeight;
            const first = Math.max(0, Math.floor(start) - overscan);
            const visible = Math.ceil(this.viewHeight / this.rowHeight);
            const last = Math.min(this.rows.length - 1, Math.floor(start) + visible + overscan);
            const added = [];
            this.dropRowsOutside(first, last);
            for (let index = first; index <= last; ++index) this.drawRow(index, shift, added);
            this.canvas.append(...added);
            this.markActive();
        }

        markActive() {
            const { current, host } = this;
            if (current && this.drawn.has(current.id))
                host.setAttribute('aria-activedescendant', 'row-' + current.id);
            else host.removeAttribute('aria-activedescendant');
        }

        setRows(list) {
            this.rows = list;
            this.places = new Map(list.map((node, index) => [node.id, index]));
            this.drawn.clear();
            this.canvas.replaceChildren();
            this.setCanvas();
            this.draw();
        }

        reveal(node) {
            const place = this.places.get(node.id);
            if (place === undefined || this.viewHeight === 0) return;
            const start = this.start();
            const height = this.viewHeight / this.rowHeight;
            const isAbove = place < start;
            if (!isAbove && place + 1 <= start + height) return;
            const first = isAbove ? place : place + 1 - height;
            this.host.scrollTop = Math.max(0, first * this.rowHeight * this.scale());
        }

        setCurrent(node) {
            this.current = node;
            this.reveal(node);
            this.draw();
        }

        /// The row that moving by `by` rows leads to from a node that has none: the nearest one in
        /// the order of the list.
        placeFrom(node, by) {
            const { rows, actions } = this;
            if (by > 0) {
                const next = rows.findIndex((one) => actions.compare(one, node) > 0);
                return next < 0 ? rows.length - 1 : next + by - 1;
            }
            const after = rows.findLastIndex((one) => actions.compare(one, node) < 0);
            return Math.max(0, after) + by + 1;
        }

        /// Moves by rows, as far as there are any.
        move(by) {
            const place = this.places.get(this.current.id);
            const target = place === undefined ? this.placeFrom(this.current, by) : place + by;
            const row = this.rows[Math.min(this.rows.length - 1, Math.max(0, target))];
            if (row) this.actions.select(row);
        }

        pageSize() {
            return Math.max(1, Math.floor(this.viewHeight / this.rowHeight) - 1);
        }
    }

    report.TreeList = TreeList;
})((globalThis.morvexReport = globalThis.morvexReport || {}));
