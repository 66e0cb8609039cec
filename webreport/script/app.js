// The page: what is shown now, and how it changes. Views get this object and call its operations;
// they change nothing by themselves.
(function (report) {
    'use strict';

    const { address, criteria, filter } = report;
    const narrow = window.matchMedia('(max-width: 860px)');

    class Page {
        constructor(documents) {
            this.runs = report.runsOf(documents);
            this.openTests = new report.OpenTests();
            /// How pictures are compared: see imageCompare.
            this.pictureView = { mode: 'slider', zoom: 1, strong: false };
            this.header = document.getElementById('header');
            this.treeHost = document.getElementById('tree');
            this.detailHost = document.getElementById('detail');
            this.list = new report.TreeList(this.treeHost, {
                isOpen: (node) => this.isOpen(node),
                select: (node) => this.select(node),
                toggle: (node) => this.toggle(node),
                open: (node) => this.open(node),
                addressOf: (node) => this.addressOf(this.run, node),
                siblings: (node) => filter.siblings(node, this.selection, this.state.slowest),
                compare: (a, b) => filter.compareRows(a, b, this.state.slowest),
                terms: () => this.terms,
            });
            this.place = report.readingPlace(this.detailHost);
            this.navigation = new report.Navigation(window, this.place, (entry, isNew) =>
                this.followAddress(entry, isNew),
            );
            this.readAddress();
            this.drawFilters = report.filterBar.create(this, document.getElementById('filters'));
            this.drawRun();
            const entry = this.navigation.entry();
            this.setView(entry);
            this.place.scrollTop = entry.top;
            this.navigation.write(this.addressHere(), 'replace');
        }

        // Address

        readAddress() {
            const filters = this.state;
            this.state = address.parse(location.hash);
            const { runs, isThere } = address.findRuns(this.runs, this.state.run);
            const before = this.run;
            this.useRuns(runs);
            this.current = address.findNode(this.run, this.state.at);
            if (
                before !== this.run ||
                address.filterText(filters) !== address.filterText(this.state)
            )
                this.openTests.reset();
            this.openTests.openTo(this.current);
            this.sayWhatIsMissing(isThere);
        }

        sayWhatIsMissing(runIsThere) {
            report.notice.clear('address');
            if (!runIsThere)
                report.notice.show(
                    'address',
                    'This report does not hold the run of the address. The latest is shown.',
                );
            else if (this.state.at && this.current.key !== this.state.at)
                report.notice.show(
                    'address',
                    'This run does not hold the place of the address. The nearest place above it is shown.',
                );
        }

        /// Only the tree of what is shown is kept: a run, or several as one tree.
        useRuns(runs) {
            const index = runs.length === 1 ? runs[0].index : -1;
            if (this.run && this.run.index === index) return;
            this.run = report.shown.build(runs);
        }

        /// For links to a node, or to a run as a whole when there is none.
        addressOf(run, node) {
            const key = run.index < 0 ? '' : this.runs[run.index].key;
            return address.format({ ...this.state, run: key, at: node ? node.key : '' });
        }

        /// Names the run also where the latest of several are shown: for those who come later.
        lastingAddressOf(node) {
            const part = report.shown.partOf(this.run, node);
            if (!part) return this.addressOf(this.run, node);
            const at = report.shown.keyIn(part, node);
            return address.format({ ...this.state, run: part.source.key, at });
        }

        addressHere() {
            return this.addressOf(this.run, this.current);
        }

        /// Going from row to row leaves no trail in the history of the browser, changing the run
        /// does.
        writeAddress(way = 'replace') {
            this.navigation.write(this.addressHere(), way);
        }

        followAddress(entry, isNew) {
            const before = this.run;
            this.readAddress();
            if (this.run !== before) this.drawRun();
            else this.drawList();
            this.showCurrent(entry.top);
            this.setView(entry);
            const isLost = this.isFocusLost();
            if (entry.view === 'detail' && (isNew || isLost)) this.detailHost.focus();
            else if (isLost) this.focusList();
        }

        /// What was hidden loses the focus with the next drawing only.
        isFocusLost() {
            const { activeElement } = document;
            return activeElement === document.body || activeElement.getClientRects().length === 0;
        }

        setView({ view }) {
            document.body.classList.toggle('showing-detail', view === 'detail');
        }

        // Drawing

        drawRun() {
            report.header.render(this, this.header);
            report.header.setTitle(this.run);
            this.drawList();
            this.showCurrent();
        }

        drawList() {
            this.terms = filter.parseText(this.state.text).wanted;
            this.selection = filter.select(this.run, this.state);
            report.header.drawFilters(this, this.header);
            this.drawFilters();
            this.drawRows();
            report.listNotes.draw(this);
            report.detail.highlight(this, this.detailHost);
        }

        drawRows() {
            const isOpen = (node) => this.isOpen(node);
            this.list.setRows(
                filter.listRows(this.run, this.selection, isOpen, this.state.slowest),
            );
            this.list.setCurrent(this.current);
        }

        showCurrent(top = 0) {
            this.list.setCurrent(this.current);
            report.detail.render(this, this.detailHost, this.current);
            report.listNotes.drawHidden(this);
            this.place.scrollTop = top;
        }

        // Place

        /// False where list and details take turns and it is that of the details.
        isListShown() {
            return !narrow.matches || !document.body.classList.contains('showing-detail');
        }

        select(node) {
            report.notice.clear('address');
            this.current = node;
            this.writeAddress();
            this.showCurrent();
        }

        /// Like select; where list and details take turns, the details come.
        open(node) {
            report.notice.clear('address');
            this.current = node;
            if (narrow.matches && this.navigation.entry().view === 'list')
                this.navigation.showDetail(this.addressHere());
            else this.writeAddress();
            this.showCurrent();
            this.setView({ view: 'detail' });
            if (narrow.matches) this.detailHost.focus();
        }

        openDetail() {
            this.open(this.current);
            this.detailHost.focus();
        }

        closeDetail() {
            if (!narrow.matches || this.navigation.showList()) {
                this.setView({ view: 'list' });
                this.focusList();
            }
        }

        /// Gives the focus to list or details, whichever is to be read.
        focusView() {
            if (this.isListShown()) this.focusList();
            else this.detailHost.focus();
        }

        focusList() {
            this.treeHost.focus();
        }

        showRun(run) {
            const part = report.shown.partOf(this.run, this.current);
            this.showRuns([run], part ? report.shown.keyIn(part, this.current) : '');
        }

        /// The latest run of each suite.
        showLatest() {
            this.showRuns(report.suites.latestOf(this.runs), '');
        }

        /// `key` is the place, as in the tree that is shown then.
        showRuns(runs, key) {
            report.notice.clear('address');
            this.useRuns(runs);
            this.current = address.findNode(this.run, key);
            this.openTests.reset();
            this.openTests.openTo(this.current);
            this.writeAddress('push');
            this.drawRun();
        }

        // Open and closed tests

        isOpen(node) {
            const found = this.selection && this.selection.opened[node.id];
            return this.openTests.isOpen(node, Boolean(found));
        }

        /// A row that goes with the test it is in leaves its mark to that.
        setOpen(node, open) {
            this.openTests.set(node, open);
            const goes = !open && report.marks.pathOf(this.current).includes(node);
            if (goes) this.current = node;
            this.drawRows();
            if (goes) this.select(node);
        }

        toggle(node) {
            if (node.children.length > 0) this.setOpen(node, !this.isOpen(node));
        }

        // Filters

        /// `change` gets the filters; with them what was opened and closed is forgotten.
        changeFilters(change) {
            change(this.state);
            this.openTests.reset();
            if (!filter.isActive(this.state)) this.openTests.openTo(this.current);
            this.writeAddress();
            this.drawList();
        }

        clearFilters() {
            this.changeFilters(criteria.clear);
        }

        toggleFailures() {
            this.changeFilters(criteria.toggleFailures);
        }

        toggleSlowest() {
            this.state.slowest = !this.state.slowest;
            this.writeAddress();
            this.drawList();
        }
    }

    report.Page = Page;
})((globalThis.morvexReport = globalThis.morvexReport || {}));
