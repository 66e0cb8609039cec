// The page: what is shown now, and how it changes. Views get this object and call its operations;
// they change nothing by themselves.
(function (report) {
    'use strict';

    const { address, filter, model } = report;
    const failedKinds = report.outcomes.entryKinds.filter((kind) => kind.failed);

    function emptyFilters() {
        return { text: '', tests: new Map(), entries: new Map() };
    }

    class Page {
        constructor(documents) {
            this.runs = documents.map((document, index) => model.buildRun(document, index));
            this.runs.forEach((run) => report.history.markNewlyFailing(this.runs, run));
            this.openTests = new report.OpenTests();
            this.treeHost = document.getElementById('tree');
            this.detailHost = document.getElementById('detail');
            this.list = report.treeList.createTreeList(this.treeHost, {
                isOpen: (node) => this.isOpen(node),
                select: (node) => this.select(node),
                toggle: (node) => this.toggle(node),
                open: (node) => this.open(node),
            });
            this.readAddress();
            this.drawFilters = report.filterBar.create(this, document.getElementById('filters'));
            this.drawRun();
        }

        // Address

        readAddress() {
            this.state = address.parse(location.hash);
            this.run = this.runs[this.state.run] || this.runs[this.runs.length - 1];
            this.current = address.find(this.run, this.state.at);
            this.openTests.reset();
            this.openTests.openTo(this.current);
        }

        /// Going from row to row leaves no trail in the history of the browser, changing the run
        /// does.
        writeAddress(push) {
            this.state.run = this.run.index;
            this.state.at = this.current.key;
            const hash = address.format(this.state);
            if (hash === location.hash) return;
            if (push) history.pushState(null, '', hash);
            else history.replaceState(null, '', hash);
        }

        /// For links to a node, or to a run as a whole when there is none.
        addressOf(run, node) {
            return address.format({ ...this.state, run: run.index, at: node ? node.key : '' });
        }

        followAddress() {
            const before = this.run;
            this.readAddress();
            if (this.run !== before) this.drawRun();
            else this.drawList();
            this.showCurrent();
            if (this.state.at) document.body.classList.add('showing-detail');
        }

        // Drawing

        drawRun() {
            report.header.render(this, document.getElementById('header'));
            report.header.setTitle(this.run);
            this.drawList();
            this.showCurrent();
        }

        drawList() {
            this.selection = filter.select(this.run, this.state);
            this.drawFilters();
            this.drawRows();
            this.drawNote();
        }

        drawRows() {
            this.list.setRows(
                filter.listRows(
                    this.run,
                    this.selection,
                    (node) => this.isOpen(node),
                    this.state.slowest,
                ),
            );
            this.list.setCurrent(this.current);
        }

        drawNote() {
            const note = document.getElementById('listNote');
            const shown = this.run.testCases.filter((one) => this.selection.shown[one.id]).length;
            const hits =
                this.selection.hits > 0
                    ? ' · ' + report.format.counted(this.selection.hits, 'hit', 'hits')
                    : '';
            note.textContent = !filter.isActive(this.state)
                ? ''
                : shown === 0 && this.selection.hits === 0
                  ? 'Nothing matches. Esc takes the filters away.'
                  : report.format.count(shown) +
                    ' of ' +
                    report.format.counted(this.run.testCases.length, 'test case', 'test cases') +
                    hits;
        }

        showCurrent() {
            this.list.setCurrent(this.current);
            report.detail.render(this, this.detailHost, this.current);
        }

        // Place

        select(node, push) {
            this.current = node;
            this.writeAddress(push);
            this.showCurrent();
        }

        open(node) {
            this.select(node);
            document.body.classList.add('showing-detail');
        }

        openDetail() {
            this.open(this.current);
            this.detailHost.focus();
        }

        closeDetail() {
            document.body.classList.remove('showing-detail');
            this.focusList();
        }

        focusList() {
            this.treeHost.focus();
        }

        showRun(run) {
            const key = this.current.key;
            this.run = run;
            this.current = address.find(run, key);
            this.openTests.reset();
            this.openTests.openTo(this.current);
            this.writeAddress(true);
            this.drawRun();
        }

        stepRun(by) {
            const run = this.runs[this.run.index + by];
            if (run) this.showRun(run);
        }

        /// The next failure among what the filters let through, round the end.
        goToFailure(by) {
            const isWanted = (node) => model.isFailurePlace(node) && this.selection.shown[node.id];
            const { nodes } = this.run;
            for (let step = 1; step <= nodes.length; ++step) {
                const node = nodes[(this.current.id + by * step + nodes.length * 2) % nodes.length];
                if (!isWanted(node)) continue;
                this.openTests.openTo(node);
                this.current = node;
                this.drawRows();
                this.select(node);
                return;
            }
            report.clipboard.toast('No failures here');
        }

        // Open and closed tests

        isOpen(node) {
            const found = this.selection && this.selection.opened[node.id];
            return this.openTests.isOpen(node, Boolean(found));
        }

        setOpen(node, open) {
            this.openTests.set(node, open);
            this.drawRows();
        }

        toggle(node) {
            if (node.children.length > 0) this.setOpen(node, !this.isOpen(node));
        }

        setAllOpen(open) {
            this.openTests.setAll(this.run, open);
            if (!open) this.current = this.current.testCase || this.run.root;
            this.drawRows();
            this.select(this.current);
        }

        goIn() {
            const first = this.current.children.find((child) => this.selection.shown[child.id]);
            if (!first) return;
            if (this.isOpen(this.current)) this.list.move(1);
            else this.setOpen(this.current, true);
        }

        goOut() {
            if (this.current.children.length > 0 && this.isOpen(this.current))
                this.setOpen(this.current, false);
            else if (this.current.parent) this.select(this.current.parent);
        }

        // Filters

        filtersChanged() {
            this.openTests.reset();
            this.writeAddress();
            this.drawList();
        }

        setText(text) {
            this.state.text = text;
            this.filtersChanged();
        }

        setMode(modes, key, mode) {
            if (mode) modes.set(key, mode);
            else modes.delete(key);
            this.filtersChanged();
        }

        setSlowest(slowest) {
            this.state.slowest = slowest;
            this.writeAddress();
            this.drawList();
        }

        clearFilters() {
            Object.assign(this.state, emptyFilters());
            this.openTests.reset();
            this.openTests.openTo(this.current);
            this.writeAddress();
            this.drawList();
        }

        showsFailuresOnly() {
            return failedKinds.every((kind) => this.state.entries.get(kind.key) === 'only');
        }

        toggleFailures() {
            this.state.entries = new Map(
                this.showsFailuresOnly() ? [] : failedKinds.map((kind) => [kind.key, 'only']),
            );
            this.filtersChanged();
        }

        /// On a narrow screen the details take the place of the list.
        escape() {
            const listHidden = document.getElementById('list').offsetParent === null;
            if (listHidden || this.detailHost.contains(document.activeElement)) this.closeDetail();
            else this.clearFilters();
        }

        // Passing on

        copyFailure(node) {
            const link = new URL(this.addressOf(this.run, node), location.href).href;
            report.clipboard.copy(report.failureText(this.run, node, link), 'Text');
        }

        copyAddress(node) {
            report.clipboard.copy(
                new URL(this.addressOf(this.run, node), location.href).href,
                'Link',
            );
        }
    }

    /// Shows the runs. `repaired` are the indices of those that were closed by this page.
    report.start = function start({ runs, repaired }) {
        document.getElementById('nodata').hidden = true;
        document.getElementById('header').hidden = false;
        document.getElementById('main').hidden = false;
        report.splitter.install(
            document.getElementById('splitter'),
            document.getElementById('main'),
        );
        const page = new Page(runs);
        report.keys.install(page);
        report.printView.install(page);
        window.addEventListener('popstate', () => page.followAddress());
        page.focusList();
        if (repaired.length > 0)
            report.clipboard.toast('The end of the data was missing: shown as far as it goes');
    };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
