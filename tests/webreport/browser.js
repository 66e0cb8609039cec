// A headless Chromium, and reports for it to open.
'use strict';

const assert = require('node:assert/strict');
const fs = require('node:fs');
const http = require('node:http');
const os = require('node:os');
const path = require('node:path');
const { after, before, describe } = require('node:test');
const { pathToFileURL } = require('node:url');
const { shopRuns, writeReport } = require('./demo');
const { dataFile } = require('./testdata');

const chromium = ['/usr/bin/chromium', '/usr/bin/chromium-browser', '/usr/bin/google-chrome'].find(
    (file) => fs.existsSync(file),
);

/// The package; null when it is not installed.
function optional(name) {
    try {
        return require(name);
    } catch {
        return null;
    }
}

const playwright = optional('playwright-core');

/// Why pages can't be tested here; empty when they can.
const missing = !playwright
    ? 'web report pages skipped: playwright-core is missing, run "npm ci" in tests/webreport'
    : !chromium
      ? 'web report pages skipped: Chromium is missing, install the package chromium'
      : '';

function dataFileOf(directory) {
    return path.join(directory, 'data', 'results-v1.js');
}

function fileAddress(directory, hash = '') {
    return pathToFileURL(path.join(directory, 'index.html')).href + hash;
}

const types = {
    '.html': 'text/html', '.js': 'text/javascript', '.css': 'text/css', '.svg': 'image/svg+xml',
    '.png': 'image/png',
};

/// Serves the directory under the content policy that build servers commonly set.
async function serve(directory) {
    const requests = [];
    const server = http.createServer((request, response) => {
        requests.push(request.url);
        const file = path.join(
            directory,
            decodeURIComponent(new URL(request.url, 'http://x').pathname),
        );
        const found = fs.existsSync(file) && fs.statSync(file).isFile();
        response.writeHead(found ? 200 : 404, {
            'Content-Security-Policy': "default-src 'self'",
            'Content-Type': types[path.extname(file)] || 'text/plain',
        });
        response.end(found ? fs.readFileSync(file) : 'not there');
    });
    await new Promise((resolve) => server.listen(0, '127.0.0.1', resolve));
    return {
        address: 'http://127.0.0.1:' + server.address().port + '/index.html',
        requests,
        close: () => server.close(),
    };
}

const rowNames = (page) => texts(page, '#tree .row .name');
const row = (page, name) =>
    page
        .locator('#tree .row')
        .filter({ has: page.locator('.name', { hasText: new RegExp('^' + name + '$') }) });
const heading = (page) => page.locator('#detail h1').textContent();
const block = (page, title) =>
    page
        .locator('#detail .block')
        .filter({ has: page.getByRole('heading', { level: 2, name: new RegExp('^' + title) }) });
const selected = (page) => page.locator('.row[aria-selected="true"] .name').textContent();
const use = (page, name) => page.getByRole('button', { name }).click();
const focused = (page) => page.evaluate(() => document.activeElement.id);

function texts(page, selector) {
    return page.locator(selector).allTextContents();
}

async function eventually(read, expected) {
    let value;
    for (let attempt = 0; attempt < 3000; ++attempt) {
        value = await read();
        if (JSON.stringify(value) === JSON.stringify(expected)) return;
        await new Promise((resolve) => setTimeout(resolve, 20));
    }
    assert.deepEqual(value, expected);
}

/// Makes a group of tests that open pages. `body` gets `report(data)`, which makes the directory of
/// a report whose name needs escaping, without a data file when `data` is null;
/// `onPage(address, body, options)`, which runs `body` on a fresh page;
/// `onRuns(runs, hash, body, options)`, for a page of these runs; `onShop(hash, body, options)`, for
/// one of the sample report `shop()`; `onServer(directory, hash, body, options)`, for one that comes
/// from a server, which `body` gets, too. An error in a script fails the test, wherever it comes
/// from, but for the one that a data file gives that is cut.
function describePages(name, body) {
    if (missing) console.log(missing);
    describe(name, { skip: missing || false, timeout: 550000 }, () => {
        let count = 0;
        let temporary;
        let browser;
        let shop;

        before(async () => {
            temporary = fs.mkdtempSync(path.join(os.tmpdir(), 'webreport-'));
            const args = process.getuid() === 0 ? ['--no-sandbox'] : [];
            const timeout = 120000;
            browser = await playwright.chromium.launch({ executablePath: chromium, args, timeout });
            shop = report(dataFile(shopRuns()));
        });
        after(async () => {
            await browser.close();
            fs.rmSync(temporary, { recursive: true });
        });

        function report(data) {
            const directory = path.join(temporary, 'my report #' + ++count);
            writeReport(directory, data);
            return directory;
        }

        async function onServer(directory, hash, act, options) {
            const server = await serve(directory);
            const body = (page, context) => act(page, server, context);
            await onPage(server.address + hash, body, options).finally(server.close);
        }

        async function onPage(address, act, { dataIsCut, ...options } = {}) {
            const viewport = { width: 1300, height: 800 };
            const context = await browser.newContext({ viewport, ...options });
            const page = await context.newPage();
            page.setDefaultTimeout(60000);
            const errors = [];
            page.on('pageerror', (error) => errors.push(error.message));
            page.on('console', (message) => {
                if (/Content Security Policy/.test(message.text())) errors.push(message.text());
            });
            try {
                await page.goto(address);
                if (dataIsCut) assert.equal(errors.splice(0).length, 1);
                await act(page, context);
                assert.deepEqual(errors, []);
            } finally {
                await context.close();
            }
        }

        const onRuns = (runs, hash, act, options) =>
            onPage(fileAddress(report(dataFile(runs)), hash), act, options);
        const onShop = (hash, act, options) => onPage(fileAddress(shop, hash), act, options);
        body({ report, onPage, onRuns, onServer, onShop, shop: () => shop });
    });
}

module.exports = {
    dataFileOf, describePages, fileAddress, block, eventually, focused, heading, optional, row,
    rowNames, selected, texts, use,
};
