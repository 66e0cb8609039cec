// Shown when the browser had no data to give: the file is missing, or the browser refused it.
(function (report) {
    'use strict';

    const { element } = report.dom;

    /// What the longest text of a browser holds, in MB: the shortest of those in use, Chromium's.
    const mostMegabytes = 512;
    const megabyte = 1 << 20;

    function code(text) {
        return element('code', null, text);
    }

    const dataFile = () => code('data/results-v1.js');

    /// Why there is no data, by what is known of it.
    const reasons = {
        missing: () => [
            'The browser could not load ',
            dataFile(),
            ' beside this page: it is not there, may not be read, or is too large for the ' +
                'browser. Copy the report directory as a whole.',
        ],
        refused: () => [
            'Most likely a run is still going on or was killed, and the last line of ',
            dataFile(),
            ' is cut: a browser then refuses the file as a whole, and lets no page that was opened ' +
                'from a file read it. All that had been written is still in it.',
        ],
        empty: () => [dataFile(), ' is whole, but no run is in it.'],
    };

    const problems = {
        unreadable: () =>
            'That file could not be read: the browser may not, or it changed while it was read. ' +
            'Choose it again when no run writes to it.',
        tooLarge: (file) =>
            'That file has ' +
            report.format.count(Math.ceil(file.size / megabyte)) +
            ' MB, and browsers can hold no more than about ' +
            mostMegabytes +
            ' MB as text. Let the runner keep fewer runs (--keep-runs), or begin a new report: give ' +
            '--reportgen html,DIRECTORY a directory that is not there yet, or rename this one.',
        noRuns: () =>
            'That file holds no runs. It should be results-v1.js in the directory data of the ' +
            'report.',
    };

    /// What FileReader has when it ends with an error says too little: a text that is too long
    /// gives the same as a file that went away.
    function problemOfReading(file) {
        return file.size > (mostMegabytes - 1) * megabyte ? 'tooLarge' : 'unreadable';
    }

    function readText(file, done, failed) {
        const reader = new FileReader();
        const fail = () => failed(problemOfReading(file));
        reader.onload = () => {
            const text = reader.result;
            // Chromium gives an empty text, or null, where the text would be too long.
            if (!text && file.size > 0) fail();
            else done(text);
        };
        reader.onerror = fail;
        reader.readAsText(file);
    }

    function chooser(onFile) {
        const input = element('input', {
            type: 'file',
            id: 'dataFile',
            accept: '.js,.json,text/javascript',
            onchange: () => {
                if (input.files[0]) onFile(input.files[0]);
            },
        });
        return element(
            'label',
            { class: 'chooser' },
            element('span', null, 'Open the data file, or drop it anywhere on this page:'),
            input,
        );
    }

    /// With the directory of this page where that is known.
    function repairCommand() {
        const isFile = location.protocol === 'file:';
        const directory = report.format.decoded(location.pathname).replace(/\/[^/]*$/, '');
        return 'morvexrunner --repair-report ' + (isFile ? report.quoted(directory) : 'DIRECTORY');
    }

    function advice(reason) {
        const others =
            'A browser also refuses a file that is too large for it, and sections nested by the ' +
            'thousand, as by a script that does not end them in a loop.';
        return [
            element(
                'p',
                { class: 'note' },
                'Choose ',
                code('results-v1.js'),
                ' from the directory ',
                code('data'),
                ' of this report. The page closes what is open and shows it; the file stays as ' +
                    'it is.',
            ),
            element(
                'p',
                { class: 'note' },
                'Or close it for good, when no run goes on: ',
                code(repairCommand()),
            ),
            reason === 'refused' ? element('p', { class: 'note' }, others) : null,
        ];
    }

    /// A file that is dropped somewhere else would take the place of the page.
    let dropped = null;
    window.addEventListener('dragover', (event) => {
        if (dropped) event.preventDefault();
    });
    window.addEventListener('drop', (event) => {
        if (!dropped) return;
        event.preventDefault();
        const [file] = event.dataTransfer.files;
        if (file) dropped(file);
    });

    /// `onData` gets what readDataFile returns. `reason` is a key of `reasons`, `problem` what to
    /// say of the file that was chosen before.
    function show(host, onData, reason, problem) {
        const onFile = (file) => {
            const failed = (key) => show(host, onData, reason, problems[key](file));
            const onText = (text) => {
                const read = report.repair.readDataFile(text);
                if (!read || read.runs.length === 0) failed('noRuns');
                else {
                    dropped = null;
                    onData(read);
                }
            };
            readText(file, onText, failed);
        };
        dropped = onFile;
        host.hidden = false;
        host.replaceChildren();
        report.dom.append(host, [
            element('h1', null, 'The results could not be read'),
            element('p', null, reasons[reason]()),
            problem ? element('p', { class: 'notice', role: 'alert' }, problem) : null,
            chooser(onFile),
            advice(reason),
        ]);
    }

    // The event of a script that can't be loaded does not bubble.
    let loaded = true;
    window.addEventListener(
        'error',
        (event) => {
            if (event.target instanceof HTMLScriptElement) loaded = false;
        },
        true,
    );

    /// False when the browser found no data file to run; true too when it ran and failed.
    report.noData = { show, couldLoad: () => loaded, mostMegabytes };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
