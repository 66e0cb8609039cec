// Some runs with one of everything that a report can hold. `node demo.js DIRECTORY` writes the
// report there, for a look at the pages.
'use strict';

const fs = require('node:fs');
const path = require('node:path');
const { RunBuilder, dataFile, tableRow } = require('./testdata');

/// As installed in a prefix, or else the sources.
const pages = process.env.MORVEX_WEBREPORT_PAGES || path.join(__dirname, '..', '..', 'webreport');
const pictures = 'suite_shop/tst_catalogue/Basket/failedImages/';
const markup = '<img src=x onerror="document.title=\'broken\'"><b>bold</b> & </script>';

function loginAttempt(run, passes) {
    run.log('Start of the login form').wait(3);
    run.section('Fill in the form', () => {
        run.pass('The name is taken').wait(1);
        if (passes) run.pass('The button is enabled');
        else
            run.fail('The button is enabled', {
                detail: "Expected 'true', got 'false'.", lineNo: 31,
                uri: 'x-testsuite:/tst_login/script.js',
            });
    });
    run.wait(2);
}

function basket(run) {
    run.section(
        'Prices',
        () => {
            run.wait(4);
            run.fail("Basket: Object property comparison of ':Basket_Label.text' failed", {
                type: 'propertyVerificationResult', objectName: ':Basket_Label', property: 'text',
                detail: "'Sum: 1,204.50 EUR' and 'Sum: 1.204,50 €' are not equal",
                expectedValue: 'Sum: 1.204,50 €', actualValue: 'Sum: 1,204.50 EUR',
                vpUri: 'x-testsuite:/tst_catalogue/verificationPoints/Basket',
                uri: 'x-testsuite:/tst_catalogue/script.js', lineNo: 48,
            });
            run.fail("Table Comparison of ':Basket_Table' failed", {
                type: 'tableVerificationResult',
                objectName: ':Basket_Table',
                detail: 'Table contents do not match expectation.',
                tablediff: [
                    tableRow('deletion', 1, ['Lamp', '2', '79.00'], ['', '', '#ffdddd']),
                    tableRow('insertion', 1, ['Lamp', '3', '118.50']),
                    tableRow('insertion', 4, ['Gift wrap', '1', '0.00']),
                ],
            });
            run.fail("Basket: Screenshot comparison of ':Basket_Window' failed", {
                type: 'screenshotVerificationResult', objectName: ':Basket_Window',
                failedImageUri: 'x-results:/' + pictures + 'failed_1.png',
                detail: `Screenshots do not match. Saved as '/home/ci/report/${pictures}failed_1.png'`,
            });
        },
        'All prices of the basket, in the language of the user',
    );
    run.attach('x-results:/suite_shop/tst_catalogue/shot%20%231.png', 'screenshot');
    run.attach('x-results:/suite_shop/tst_catalogue/server.log');
}

function shopRun(start, night) {
    const run = new RunBuilder('suite_shop', start);
    run.log('Random order of test cases', { detail: 'Use --random 4711 to retest in this order' });
    run.testCase('tst_catalogue', () => {
        run.wait(12).pass('The catalogue is there');
        (night >= 2 ? basket : (one) => one.pass('The prices are right'))(run);
    });
    if (night === 1) {
        run.attempt('tst_login', 0, 2, () => loginAttempt(run, true));
    } else {
        run.attempt('tst_login', 0, 2, () => loginAttempt(run, false));
        run.attempt('tst_login', 1, 2, () => loginAttempt(run, night === 3));
    }
    run.testCase('tst_import', () => {
        run.wait(75).message('WARNING', 'The import took longer than usual');
        run.verify('XFAIL', 'The old format is read', { detail: 'Expected 3, got 4.' });
        run.verify(night === 3 ? 'XPASS' : 'XFAIL', 'The broken file is refused');
    });
    run.wait(1).testCase('tst_markup', () => run.log(markup).pass('Still here: ' + markup));
    run.testCase('tst_crash', () => {
        run.wait(8).log('Open the settings');
        if (night === 3)
            run.message('ERROR', 'TypeError: Cannot call method "click" of null', {
                detail:
                    'TypeError: Cannot call method "click" of null\n' +
                    '  at /home/ci/suite_shop/tst_crash/script.js:17\n' +
                    '  at /home/ci/suite_shop/shared/my steps.js:203\n' +
                    '  at /opt/lib/start.js:4',
                uri: 'x-testsuite:/tst_crash/script.js',
                lineNo: 17,
                screenshotUri: 'x-results:/suite_shop/tst_catalogue/shot%20%231.png',
            });
        run.message('FATAL', 'Execution error', { detail: 'The process ended by signal 11' });
    });
    run.testCase('tst_windows_only', () =>
        run.skipped('testcase', 'tst_windows_only', 'Skipped by the command line.'),
    );
    run.begin('testcase', 'tst_orders').begin('feature', 'Orders');
    for (const name of ['An order is placed', 'An order is cancelled']) {
        run.begin('scenario', name);
        for (const step of ['Given a customer with a full basket', 'When the customer pays'])
            run.within('step', step, {}, () => run.wait(1).pass('Done'));
        run.end();
    }
    run.end().end();
    for (let number = 1; number <= 18; ++number)
        run.testCase('tst_report_' + String(number).padStart(2, '0'), () =>
            run.wait(number % 7).pass('The report is written'),
        );
    return run.finish();
}

/// Three nights of one suite. In the last `tst_import` fails for the first time, `tst_catalogue`
/// for the second, `tst_login` is flaky.
function shopRuns() {
    return [1, 2, 3].map((night) => shopRun(`2026-03-0${night}T22:00:00Z`, night));
}

function picture(name) {
    return fs.readFileSync(path.join(__dirname, 'pictures', name + '.png'));
}

/// A report directory with the pages, the data file (if any) and pictures.
function writeReport(directory, dataText) {
    fs.cpSync(pages, directory, {
        recursive: true,
        filter: (file) => !/CMakeLists.txt|\.cmake$/.test(file),
    });
    fs.mkdirSync(path.join(directory, 'data'), { recursive: true });
    fs.mkdirSync(path.join(directory, pictures), { recursive: true });
    const write = (name, content) => fs.writeFileSync(path.join(directory, name), content);
    if (dataText !== null) write('data/results-v1.js', dataText);
    write(pictures + 'failed_1.png', picture('failed'));
    write(pictures + 'expected_1.png', picture('expected'));
    write(
        pictures + 'failed_1.png.js',
        'morvexPictureDifference({"pixels":7200,"regions":2,' +
            '"largest":[[180,60,40,90],[90,60,40,90]]});',
    );
    write('suite_shop/tst_catalogue/shot #1.png', picture('shot'));
    write('suite_shop/tst_catalogue/server.log', 'ready\n');
}

module.exports = { picture, shopRuns, writeReport };

if (require.main === module) writeReport(process.argv[2], dataFile(shopRuns()));
