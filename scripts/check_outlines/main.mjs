// Compares bodies' outlines with what lottie-web shows of their layers at frame 0. README.md beside this tells more.
import fs from 'node:fs';
import path from 'node:path';
import { execFileSync } from 'node:child_process';
import { fileURLToPath } from 'node:url';
import { startPage } from './page.mjs';
import { alone, asRead, notRead } from './variants.mjs';

const here = path.dirname(fileURLToPath(import.meta.url));
const wanted = 0.98;

function parseArguments(argv) {
  const options = { out: path.join(here, 'out'), files: [], layers: Infinity,
    program: process.env.JOSTLE ?? path.join(here, '../../build/release/bin/jostle') };
  for (let i = 0; i < argv.length; i += 1) {
    if (argv[i] === '--out') options.out = argv[i += 1];
    else if (argv[i] === '--program') options.program = argv[i += 1];
    else if (argv[i] === '--layers') options.layers = Number(argv[i += 1]);
    else options.files.push(argv[i]);
  }
  if (options.files.length === 0) {
    console.error('usage: check.sh [--out FOLDER] [--program JOSTLE] [--layers N] FILE.json...');
    process.exit(2);
  }
  return options;
}

const isPiece = (piece) => piece.radius !== undefined || piece.closed;

/// The layer as shown, as read where that differs, and as read with finer curves where that differs too.
async function compareLayer(page, document, layer, fineLayer) {
  const index = layer.number - 1;
  const run = (variant, { outlines }) =>
    page.evaluate(([d, p]) => window.compare(d, p), [variant, outlines.filter(isPiece)]);
  const shown = await run(alone(document, index), layer);
  const best = async (variants, from, start) => {
    let result = start;
    for (const variant of variants) {
      const next = await run(variant, from);
      if (next.overlap > result.overlap) result = next;
    }
    return result;
  };
  if (shown.overlap >= wanted) return { shown, read: shown, fine: shown };
  const read = await best(asRead(document, index), layer, shown);
  if (read.overlap >= wanted) return { shown, read, fine: read };
  return { shown, read, fine: await best([alone(document, index), ...asRead(document, index)], fineLayer, read) };
}

const inspect = (options, file, more) => JSON.parse(execFileSync(options.program,
  ['inspect', '--json', '--outlines', ...more, file], { encoding: 'utf8', maxBuffer: 1 << 30 }));

async function checkFile(page, file, options, rows) {
  const inspected = inspect(options, file, []);
  const fine = inspect(options, file, ['--precision', '10']);
  const document = JSON.parse(fs.readFileSync(file, 'utf8').replace(/^\uFEFF/, ''));
  const compared = inspected.layers.filter((layer) => layer.body && !['bounds', 'fallback'].includes(layer.readFrom));
  for (const layer of compared.slice(0, options.layers)) {
    const row = { file: path.basename(file, '.json'), layer: layer.number, name: layer.name, from: layer.readFrom,
      shape: layer.shape, reasons: notRead(document.layers[layer.number - 1]).join(', ') };
    rows.push(row);
    if (!layer.outlines.some(isPiece)) {
      row.note = 'no area';
      continue;
    }
    try {
      const results = await compareLayer(page, document, layer, fine.layers[layer.number - 1]);
      const written = new Set();
      for (const [kind, result] of Object.entries(results)) {
        row[kind] = result.overlap;
        if (!result.picture || written.has(result)) continue;
        written.add(result);
        fs.writeFileSync(path.join(options.out, `${row.file}-${row.layer}-${kind}.png`),
          Buffer.from(result.picture, 'base64'));
      }
    } catch (error) {
      row.note = String(error.message ?? error).split('\n')[0];
    }
  }
}

function print(rows) {
  const percent = (value) => (value === undefined ? '     ' : value.toFixed(3));
  for (const row of rows) {
    console.log([`${row.file}#${row.layer}`.padEnd(44), row.from.padEnd(6), percent(row.shown), percent(row.read),
      percent(row.fine), row.shape.padEnd(22), row.note ?? (row.shown < wanted ? row.reasons : '')].join('  ').trimEnd());
  }
  const measured = rows.filter((row) => row.shown !== undefined);
  const count = (key) => measured.filter((row) => row[key] >= wanted).length;
  console.log(`\n${measured.length} layers of ${new Set(measured.map((row) => row.file)).size} files: as shown `
    + `${count('shown')} overlap by ${wanted} or more, as read ${count('read')}, with finer curves ${count('fine')}`);
  return measured.length > 0 && count('fine') === measured.length;
}

const options = parseArguments(process.argv.slice(2));
fs.mkdirSync(options.out, { recursive: true });
const { page, close } = await startPage(process.env.CHROMIUM);
const rows = [];
try {
  for (const file of options.files) {
    try {
      await checkFile(page, file, options, rows);
    } catch (error) {
      console.error(`${file}: ${String(error.message ?? error).split('\n')[0]}`);
    }
  }
} finally {
  await close();
}
process.exitCode = print(rows) ? 0 : 1;
