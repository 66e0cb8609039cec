'use strict';

const assert = require('node:assert/strict');
const fs = require('node:fs');
const path = require('node:path');
const { test } = require('node:test');
const tools = require('./browser');
const { shopRuns } = require('./demo');
const { dataFile } = require('./testdata');

tools.describePages('The data file', ({ report, onPage, onServer, onShop, shop }) => {
    const cut = { dataIsCut: true };
    const rows = (page) => page.locator('#tree .row').first();

    const choose = (page, file) => page.setInputFiles('#dataFile', file);
    async function drop(page, file) {
        const transfer = await page.evaluateHandle(
            (content) => {
                const data = new DataTransfer();
                data.items.add(new File([content], 'results-v1.js'));
                return data;
            },
            fs.readFileSync(file, 'utf8'),
        );
        await page.locator('body').dispatchEvent('drop', { dataTransfer: transfer });
    }

    test('A file that is cut is repaired when it is chosen or dropped on the page', async () => {
        const text = dataFile(shopRuns());
        const ends = [text.lastIndexOf('],"stop"'), -9];
        for (const [index, give] of [choose, drop].entries()) {
            const directory = report(text.slice(0, ends[index]));
            await onPage(
                tools.fileAddress(directory),
                async (page) => {
                    await page.getByText('The results could not be read').waitFor();
                    await give(page, tools.dataFileOf(directory));
                    await rows(page).waitFor();
                    assert.equal(await page.locator('.headline .badge').count(), 1);
                    const notices = await page.locator('#notices').innerText();
                    assert.match(notices, /end of the data was missing/);
                    await page.locator('#runPicker').selectOption('0');
                    assert.match(await page.locator('.totals').textContent(), /25 test cases/);
                },
                cut,
            );
        }
    });

    test('A server lets the page read a file that is being written', () => {
        const text = dataFile(shopRuns());
        const directory = report(text.slice(0, text.lastIndexOf('tst_report_18')));
        const look = async (page) => {
            await rows(page).waitFor();
            assert.match(await page.locator('#notices').innerText(), /still going on/);
            assert.ok((await tools.rowNames(page)).includes('tst_report_17'));
        };
        return onServer(directory, '', look, cut);
    });

    test('A page without data says what was the matter with the file', async () => {
        const said = (page) => page.locator('#nodata p').first().innerText();
        const alert = (page) => page.getByRole('alert').textContent();
        const missing = report(null);
        await onPage(tools.fileAddress(missing), async (page) => {
            assert.match(await said(page), /could not load/);
            await choose(page, path.join(missing, 'index.html'));
            assert.match(await alert(page), /holds no runs/);
        });
        await onPage(tools.fileAddress(report(dataFile([]))), async (page) =>
            assert.match(await said(page), /no run is in it/),
        );
        const tooLarge = report('var data = [];\n');
        fs.truncateSync(tools.dataFileOf(tooLarge), 600 * 1024 * 1024);
        await onPage(tools.fileAddress(missing), async (page) => {
            await choose(page, tools.dataFileOf(tooLarge));
            assert.match(await alert(page), /600 MB.*512 MB.*new report/);
            await page.evaluate(() => {
                FileReader.prototype.readAsText = function fail() {
                    this.onerror();
                };
            });
            await choose(page, path.join(missing, 'index.html'));
            assert.match(await alert(page), /could not be read/);
        });
    });

    test('Everything works under a strict content policy', () =>
        onServer(shop(), '#run=3', async (page, server) => {
            // Page, script, style sheet, data, and two icons.
            if (process.env.MORVEX_WEBREPORT_PAGES) assert.ok(server.requests.length <= 6);
            await page.keyboard.press('e');
            for (const key of ['f', 'n', 'n', 'n', 's', '?', '?']) await page.keyboard.press(key);
            await tools.use(page, 'Difference');
            const styleOf = (place, name) =>
                place.evaluate((one, key) => getComputedStyle(one)[key], name);
            assert.equal(await styleOf(page.locator('.part').first(), 'flexGrow'), '1');
            assert.notEqual(await styleOf(page.locator('.row').last(), 'transform'), 'none');
        }));

    test('Without scripts the page says what to do', () =>
        onShop(
            '',
            async (page) => {
                assert.match(await page.locator('.noscript').innerText(), /needs JavaScript/);
                assert.equal(await page.getByText('Reading the results').isVisible(), false);
            },
            { javaScriptEnabled: false },
        ));
});
