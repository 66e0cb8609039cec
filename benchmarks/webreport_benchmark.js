// How long the page of the web report takes to its first picture, for a key in the search, and to
// the trees of a visual verification, beside a loop that makes as many rows as the page shows,
// plainly. `node benchmarks/webreport_benchmark.js`, after `npm ci` in tests/webreport. Measured are
// the pages as they are installed.
'use strict';

const { execFileSync } = require('node:child_process');
const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');
const { pathToFileURL } = require('node:url');

const tests = path.join(__dirname, '..', 'tests', 'webreport');
const sources = path.join(__dirname, '..', 'webreport');
const pages = fs.mkdtempSync(path.join(os.tmpdir(), 'webreport-pages-'));
const join = ['-DSOURCE=' + sources, '-DTARGET=' + pages, '-P', path.join(sources, 'join.cmake')];
execFileSync('cmake', join);
fs.cpSync(path.join(sources, 'image'), path.join(pages, 'image'), { recursive: true });
process.env.MORVEX_WEBREPORT_PAGES = pages;
const { chromium } = require(path.join(tests, 'node_modules', 'playwright-core'));
const { writeReport } = require(path.join(tests, 'demo'));
const { RunBuilder, dataFile } = require(path.join(tests, 'testdata'));

const rounds = 5;
const checks = 200;
const elements = 5000;
const fanOut = 12;

function reportOf(directory, results) {
    const run = new RunBuilder('suite_big');
    for (let test = 0; test < results / checks; ++test)
        run.testCase('tst_' + test, () => {
            for (let check = 0; check < checks; ++check)
                run.verify(
                    (check + test) % 997 ? 'PASS' : 'FAIL',
                    `Check ${test}-${check} of the form`,
                );
        });
    writeReport(directory, dataFile([run.finish()]));
}

/// A page that reads the same data and appends a row for each result, or for each that was found.
const plainPage = `<!DOCTYPE html><meta charset="utf-8"><input id="search"><div id="tree"></div>
<script src="data/results-v1.js"></script><script src="plain.js"></script>`;
const plainScript = `
const tree = document.getElementById('tree');
const results = [];
const collect = (tests) => tests.forEach((one) => (one.tests ? collect(one.tests) : results.push(one)));
data.forEach((run) => collect(run.tests));
function show(term) {
    tree.replaceChildren();
    for (const one of results) {
        if (!(one.text + (one.detail || '')).toLowerCase().includes(term)) continue;
        const row = document.createElement('div');
        row.className = 'row';
        row.textContent = one.result + ' ' + one.text + ' ' + one.time;
        tree.append(row);
    }
}
show('');
document.getElementById('search').addEventListener('input', (event) => show(event.target.value));`;

/// `{page, paint}`: the page, and the milliseconds until the first of what is looked for was shown.
async function open(browser, address, selector) {
    const page = await browser.newPage({ viewport: { width: 1300, height: 800 } });
    await page.addInitScript((wanted) => {
        const look = () => {
            if (!document.querySelector(wanted)) requestAnimationFrame(look);
            else setTimeout(() => (globalThis.firstShown = performance.now()));
        };
        requestAnimationFrame(look);
    }, selector);
    await page.goto(address);
    await page.waitForFunction(() => globalThis.firstShown);
    return { page, paint: await page.evaluate(() => globalThis.firstShown) };
}

async function measure(browser, address) {
    const { page, paint } = await open(browser, address, '.row');
    const key = await page.evaluate(async () => {
        const frame = () => new Promise((done) => requestAnimationFrame(() => setTimeout(done)));
        const field = document.getElementById('search');
        const press = async (text) => {
            const start = performance.now();
            field.value = text;
            field.dispatchEvent(new Event('input'));
            await frame();
            return performance.now() - start;
        };
        await press('c');
        return press('check 1');
    });
    await page.close();
    return { paint, key };
}

/// A visual verification that failed, and what the report keeps of both trees.
function treesReportOf(directory) {
    const failedObjectDump = 'x-results:/form.xml_1.xml';
    const failure = { type: 'visualVerificationResult', failedObjectDump };
    const run = new RunBuilder('suite').testCase('tst', (one) => one.fail('Form', failure));
    writeReport(directory, dataFile([run.finish()]));
    const node = (number) => {
        const children = [];
        for (let i = 1; i <= fanOut && number * fanOut + i < elements; ++i)
            children.push(node(number * fanOut + i));
        const value = { kind: 'content', name: 'text', expected: 'a' + number, actual: 'b' };
        const differences = number % 10 ? undefined : [value];
        return { name: 'Element ' + number, class: 'QLabel', differences, children };
    };
    const trees = { expected: [node(0)], actual: [node(0)], pictures: [] };
    const call = (name) => name + '(' + JSON.stringify(trees) + ');';
    fs.writeFileSync(path.join(directory, 'form.xml_1.xml.js'), call('morvexVisualTrees'));
    fs.writeFileSync(path.join(directory, 'trees.js'), call('showPlainly'));
}

/// Appends a line for each element, within that of its parent.
const plainTreesPage = `<!DOCTYPE html><meta charset="utf-8"><script>
function show(parent, { name, children }) {
    const line = document.createElement('div');
    line.className = 'line';
    line.textContent = name;
    parent.append(line);
    children.forEach((child) => show(line, child));
}
function showPlainly({ expected, actual }) {
    expected.concat(actual).forEach((node) => show(document.documentElement, node));
}
</script><script src="trees.js"></script>`;

async function measureTrees(browser) {
    const directory = fs.mkdtempSync(path.join(os.tmpdir(), 'webreport-benchmark-'));
    treesReportOf(directory);
    fs.writeFileSync(path.join(directory, 'plain.html'), plainTreesPage);
    const { href } = pathToFileURL(path.join(directory, 'index.html'));
    const plainHref = pathToFileURL(path.join(directory, 'plain.html')).href;
    const times = { page: [], plain: [] };
    const time = async (address, selector) => {
        const { page, paint } = await open(browser, address, selector);
        await page.close();
        return paint;
    };
    for (let round = 0; round < rounds; ++round) {
        times.page.push(await time(href + '#at=tst/!0', '.visualtrees li'));
        times.plain.push(await time(plainHref, '.line'));
    }
    printTimes(`trees of ${elements} elements, opened`, median(times.page), median(times.plain));
    fs.rmSync(directory, { recursive: true });
}

function printTimes(what, page, plain) {
    console.log(
        `${what}: page ${page.toFixed(0)} ms, plain loop ${plain.toFixed(0)} ms, ` +
            `ratio ${(page / plain).toFixed(2)}`,
    );
}

function median(numbers) {
    return [...numbers].sort((a, b) => a - b)[numbers.length >> 1];
}

async function main() {
    const executablePath = execFileSync('which', ['chromium'], { encoding: 'utf8' }).trim();
    const args = process.getuid() === 0 ? ['--no-sandbox'] : [];
    const browser = await chromium.launch({ executablePath, args });
    for (const results of [20000, 200000]) {
        const directory = fs.mkdtempSync(path.join(os.tmpdir(), 'webreport-benchmark-'));
        reportOf(directory, results);
        fs.writeFileSync(path.join(directory, 'plain.html'), plainPage);
        fs.writeFileSync(path.join(directory, 'plain.js'), plainScript);
        const all = { index: [], plain: [] };
        for (let round = 0; round < rounds; ++round)
            for (const name of Object.keys(all)) {
                const { href } = pathToFileURL(path.join(directory, name + '.html'));
                all[name].push(await measure(browser, href));
            }
        for (const what of ['paint', 'key']) {
            const [page, plain] = [all.index, all.plain].map((runs) =>
                median(runs.map((one) => one[what])),
            );
            printTimes(`${results} results, ${what}`, page, plain);
        }
        fs.rmSync(directory, { recursive: true });
    }
    await measureTrees(browser);
    await browser.close();
    fs.rmSync(pages, { recursive: true });
}

main();
