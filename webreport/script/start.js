// Shows the runs of the data file, or asks for it. `data` is what the file leaves behind; it is not
// there when the browser refused the file.
(function (report) {
    'use strict';

    const byId = (id) => document.getElementById(id);

    function install(page) {
        report.keys.install(page);
        report.printView.install(page);
        report.splitter.install(byId('splitter'), byId('main'));
        byId('skip').addEventListener('click', () => page.closeDetail());
    }

    /// `repaired` are the indices of those runs that were closed by this page.
    function start({ runs, repaired }) {
        byId('nodata').hidden = true;
        for (const id of ['skip', 'header', 'main']) byId(id).hidden = false;
        const page = new report.Page(runs);
        install(page);
        page.focusView();
        if (repaired.length > 0)
            report.notice.show(
                'data',
                'The end of the data was missing. All that had been written is shown; the file ' +
                    'itself is as it was.',
            );
    }

    function showData() {
        const runs = Array.isArray(globalThis.data)
            ? globalThis.data.filter((run) => run && run.version)
            : [];
        if (runs.length > 0) start({ runs, repaired: [] });
        else
            report.noData.show(
                byId('nodata'),
                start,
                globalThis.data ? 'empty' : report.noData.couldLoad() ? 'refused' : 'missing',
            );
    }

    // The data is loaded after the scripts of the page.
    document.addEventListener('DOMContentLoaded', showData);
})((globalThis.morvexReport = globalThis.morvexReport || {}));
