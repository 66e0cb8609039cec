// `data` is what the data file leaves behind; it is not there when the browser refused the file.
(function (report) {
    'use strict';

    const place = document.getElementById('nodata');
    const runs = Array.isArray(globalThis.data)
        ? globalThis.data.filter((run) => run && run.version)
        : [];
    if (runs.length > 0) report.start({ runs, repaired: [] });
    else
        report.noData.show(
            place,
            report.start,
            globalThis.data ? 'The data file is whole, but no run is in it.' : '',
        );
})((globalThis.morvexReport = globalThis.morvexReport || {}));
