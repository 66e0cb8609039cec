'use strict';

const assert = require('node:assert/strict');
const { test } = require('node:test');
const tools = require('./browser');
const { RunBuilder, tableRow } = require('./testdata');

async function printed(page) {
    await page.evaluate(() => window.dispatchEvent(new Event('beforeprint')));
    await page.emulateMedia({ media: 'print' });
    return page.locator('#print').innerText();
}

tools.describePages('Paper', ({ onRuns, onShop }) => {
    test('Paper gets all test cases, and the failures with both their pictures', () =>
        onShop('#run=3', async (page) => {
            const text = await printed(page);
            const parts = ['tst_report_18', 'tst_login', 'Sum: 1,204.50 EUR', 'Gift wrap'];
            for (const part of [...parts, 'my steps.js:203']) assert.ok(text.includes(part), part);
            assert.equal(await page.locator('#main').isVisible(), false);
            await page.emulateMedia({ media: null });
            // A fresh page, whose pictures nobody has looked at.
            await page.reload();
            const pdf = (await page.pdf()).toString('latin1');
            assert.equal(pdf.match(/\/Width 480/g).length, 3);
        }));

    test('Paper says what it leaves out, and a wide table keeps to it', async () => {
        const same = 'same '.repeat(800);
        const cells = (index) => [...Array(7).fill('same in both'), 'cell ' + index];
        const tablediff = Array.from({ length: 200 }, (unused, index) =>
            tableRow(index % 2 ? 'insertion' : 'deletion', index >> 1, [
                ...cells(index), ...Array(22).fill('same in both'),
            ]),
        );
        const run = new RunBuilder('suite_wide').testCase('tst', (one) =>
            one
                .fail('Long', { detail: 'x'.repeat(90000) })
                .fail('Values', { detail: `Expected '${same}1', got '${same}2'.` })
                .fail('Wide', { tablediff }),
        );
        await onRuns([run.finish()], '', async (page) => {
            await page.setViewportSize({ width: 700, height: 900 });
            const text = await printed(page);
            assert.match(text, /87,000 more characters not printed/);
            assert.match(text, /3,700 equal characters/);
            assert.match(text, /40 of 200 differences, 29 columns not printed/);
            assert.ok(text.includes('cell 39') && !text.includes('same in both'));
            assert.ok(await page.evaluate(() => document.documentElement.scrollWidth <= 700));
        });
    });

    test('One failure that is hard to draw leaves the others on the paper', async () => {
        const run = new RunBuilder('suite_table').testCase('tst', (one) =>
            one
                .fail('Before')
                .fail('Rows', {
                    tablediff: [
                        tableRow('deletion', 0, ['a', 'b']),
                        tableRow('insertion', 0, ['a', 'b', 'more']),
                        tableRow('deletion', 1, ['c', 'd', 'less']),
                        tableRow('insertion', 1, ['c']),
                    ],
                })
                .fail('Broken'),
        );
        await onRuns([run.finish()], '#at=tst/!1', async (page) => {
            assert.equal(await page.locator('#detail td.differs').count(), 6);
            await page.evaluate(() => {
                const { entryView } = globalThis.morvexReport.entryView;
                globalThis.reportError = () => {};
                globalThis.morvexReport.entryView.entryView = (app, node, views) => {
                    if (node.name === 'Broken') throw new Error('on purpose');
                    return entryView(app, node, views);
                };
            });
            const text = await printed(page);
            for (const part of ['Before', 'more', 'less', 'Could not be printed: Broken'])
                assert.ok(text.includes(part), part + ' in ' + text);
        });
    });
});
