// Shown when the browser had no data to give: the file is missing, or broke off in its middle.
(function (report) {
    'use strict';

    const { element } = report.dom;

    function readText(file, done) {
        const reader = new FileReader();
        reader.onload = () => done(String(reader.result));
        reader.onerror = () => done('');
        reader.readAsText(file);
    }

    function chooser(onText) {
        const input = element('input', {
            type: 'file',
            id: 'dataFile',
            accept: '.js,.json,text/javascript',
            onchange: () => {
                if (input.files[0]) readText(input.files[0], onText);
            },
        });
        return element(
            'label',
            { class: 'chooser' },
            element('span', null, 'Open the data file …'),
            input,
        );
    }

    /// `onData` gets what readDataFile returns. `problem` tells what was wrong with the file
    /// before.
    function show(host, onData, problem) {
        const onText = (text) => {
            const read = report.repair.readDataFile(text);
            if (read && read.runs.length > 0) onData(read);
            else
                show(
                    host,
                    onData,
                    'That file holds no runs. It should be results-v1.js in the directory data ' +
                        'of the report.',
                );
        };
        host.hidden = false;
        host.replaceChildren();
        report.dom.append(host, [
            element('h1', null, 'The results could not be read'),
            element(
                'p',
                null,
                'The browser found no complete ',
                element('code', null, 'data/results-v1.js'),
                ' beside this page. When a run is killed its last line is cut, and a browser ' +
                    'then refuses the whole file. All that had been written is still in it:',
            ),
            problem ? element('p', { class: 'notice', role: 'alert' }, problem) : null,
            chooser(onText),
            element(
                'p',
                { class: 'note' },
                'Choose ',
                element('code', null, 'results-v1.js'),
                ' from the directory ',
                element('code', null, 'data'),
                ' of this report: the page closes what is open and shows it, and the file stays ' +
                    'as it is. To mend it for good, run ',
                element('code', null, 'morvexrunner --repair-report DIRECTORY'),
                '.',
            ),
        ]);
    }

    report.noData = { show };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
