// How long the page of the web report takes to its first picture, and for a key in the search, beside
// a loop that makes as many rows as the page shows, plainly. `node benchmarks/webreport_benchmark.js`,
// after `npm ci` in tests/webreport. Measured are the pages as they are installed.
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

async function measure(browser, address) {
    const page = await browser.newPage({ viewport: { width: 1300, height: 800 } });
    await page.addInitScript(() => {
        const look = () => {
            if (!document.querySelector('.row')) requestAnimationFrame(look);
            else setTimeout(() => (globalThis.firstRows = performance.now()));
        };
        requestAnimationFrame(look);
    });
    await page.goto(address);
    await page.locator('.row').first().waitFor();
    const times = await page.evaluate(async () => {
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
        return { paint: globalThis.firstRows, key: await press('check 1') };
    });
    await page.close();
    return times;
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
            const ratio = (page / plain).toFixed(2);
            console.log(
                `${results} results, ${what}: page ${page.toFixed(0)} ms, plain loop ` +
                    `${plain.toFixed(0)} ms, ratio ${ratio}`,
            );
        }
        fs.rmSync(directory, { recursive: true });
    }
    await browser.close();
    fs.rmSync(pages, { recursive: true });
}

main();
