// The parts of the pages that need no browser.
'use strict';

const fs = require('node:fs');
const path = require('node:path');

const pages = path.join(__dirname, '..', '..', 'webreport');
/// What the page loads before the comment, in its order.
const [parts] = fs.readFileSync(path.join(pages, 'index.html'), 'utf8').split('<!-- Those above');

for (const [, script] of parts.matchAll(/<script src="(script\/\w+\.js)"/g))
    require(path.join(pages, script));

module.exports = globalThis.morvexReport;
