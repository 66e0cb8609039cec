// A headless Chromium, and reports for it to open.
'use strict';

const fs = require('node:fs');
const http = require('node:http');
const os = require('node:os');
const path = require('node:path');
const { pathToFileURL } = require('node:url');
const { writeReport } = require('./demo');

const chromium = ['/usr/bin/chromium', '/usr/bin/chromium-browser', '/usr/bin/google-chrome'].find(
    (file) => fs.existsSync(file),
);

function loadPlaywright() {
    try {
        return require('playwright-core');
    } catch {
        return null;
    }
}

const playwright = loadPlaywright();

/// Why pages can't be tested here; empty when they can.
const missing = !playwright
    ? 'web report pages skipped: playwright-core is missing, run "npm ci" in tests/webreport'
    : !chromium
      ? 'web report pages skipped: Chromium is missing, install the package chromium'
      : '';

function launch() {
    const args = process.getuid() === 0 ? ['--no-sandbox'] : [];
    return playwright.chromium.launch({ executablePath: chromium, args });
}

/// A report in a directory whose name needs escaping. `data` null means that there is no data file.
function makeReport(data) {
    const directory = path.join(
        fs.mkdtempSync(path.join(os.tmpdir(), 'webreport-')),
        'my report #1',
    );
    writeReport(directory, data);
    return directory;
}

function dataFileOf(directory) {
    return path.join(directory, 'data', 'results-v1.js');
}

function removeReport(directory) {
    fs.rmSync(path.dirname(directory), { recursive: true });
}

function fileAddress(directory, hash = '') {
    return pathToFileURL(path.join(directory, 'index.html')).href + hash;
}

const types = {
    '.html': 'text/html',
    '.js': 'text/javascript',
    '.css': 'text/css',
    '.svg': 'image/svg+xml',
    '.png': 'image/png',
};

/// Serves the directory under the content policy that build servers commonly set.
async function serve(directory) {
    const server = http.createServer((request, response) => {
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
        close: () => server.close(),
    };
}

module.exports = { missing, launch, makeReport, dataFileOf, removeReport, fileAddress, serve };
