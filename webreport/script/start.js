// Shows the runs of the data file, or asks for it. `data` is what the file leaves; it is not there
// when the browser refused the file.
(function (report) {
    'use strict';

    const file = 'data/results-v1.js';
    const byId = (id) => document.getElementById(id);

    function install(page) {
        report.keys.install(page);
        report.printView.install(page);
        report.splitter.install(byId('splitter'), byId('main'));
        byId('skip').addEventListener('click', () => page.closeDetail());
    }

    function start(runs) {
        byId('nodata').hidden = true;
        for (const id of ['skip', 'header', 'main']) byId(id).hidden = false;
        const page = new report.Page(runs);
        install(page);
        page.focusView();
        report.sizeNotice.showLater(runs);
    }

    /// What a person gave. `repaired` are the indices of those runs that were closed by this page.
    function startGiven({ runs, repaired }) {
        start(runs);
        if (repaired.length > 0)
            report.notice.show(
                'data',
                'The end of the data was missing. All that had been written is shown; the file ' +
                    'itself is as it was.',
            );
    }

    /// A server lets the page read what the browser refuses to run.
    function startReading({ runs, repaired }) {
        start(runs);
        // A browser refuses a whole file too, when it is nested deeply.
        if (repaired.length === 0) return;
        report.notice.show(
            'data',
            'A run is still going on, or was interrupted: the end of the data is missing. All that ' +
                'has been written is shown; reload the page for more.',
        );
    }

    async function readData() {
        const answer = await fetch(file, { cache: 'no-store' });
        const read = answer.ok ? report.repair.readDataFile(await answer.text()) : null;
        if (!read || read.runs.length === 0) throw new Error('No runs in ' + file);
        return read;
    }

    function ask(reason) {
        report.noData.show(byId('nodata'), startGiven, reason);
    }

    function showData() {
        const { data } = globalThis;
        const runs = Array.isArray(data) ? data.filter((run) => run && run.version) : [];
        if (runs.length > 0) start(runs);
        else if (data) ask('empty');
        else if (!report.noData.couldLoad()) ask('missing');
        else if (location.protocol === 'file:') ask('refused');
        else
            readData().then(startReading, (error) => {
                globalThis.reportError(error);
                ask('refused');
            });
    }

    // The data is loaded after the scripts of the page.
    document.addEventListener('DOMContentLoaded', showData);
})((globalThis.morvexReport = globalThis.morvexReport || {}));
