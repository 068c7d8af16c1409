// Bakes files with jostle and compares what players show with the simulation's samples.
import { spawnSync } from 'node:child_process';
import fs from 'node:fs';
import os from 'node:os';
import path from 'node:path';
import { fileURLToPath } from 'node:url';
import { parseArgs } from 'node:util';
import { compareBaked } from './compare.mjs';
import { chosenFrames } from './expected.mjs';
import { readLottie } from './lottie_file.mjs';
import { drawOverview, startBrowser } from './lottie_web.mjs';
import { findProgram, lottieFilesOf, printRows, repository } from './main_parts.mjs';

const here = path.dirname(fileURLToPath(import.meta.url));

const usage = `usage: check.sh [--frames N|all] [--out FOLDER] [--program JOSTLE] [FILE...] [-- SOLVE-OPTION...]
       check.sh --baked [--frames N|all] [--out FOLDER] RESULT SAMPLES.json
       check.sh --matrices [--limit PX] [--program JOSTLE] FILE|FOLDER...`;

function wrongUse(message) {
  console.error(`check_players: ${message}\n${usage}`);
  process.exit(2);
}

function readOptions(argv) {
  // What stands after "--" goes to the program.
  const split = argv.indexOf('--');
  const own = split < 0 ? argv : argv.slice(0, split);
  try {
    const { values, positionals } = parseArgs({
      args: own,
      allowPositionals: true,
      options: {
        frames: { type: 'string', default: '3' },
        out: { type: 'string', default: path.join(here, 'out') },
        program: { type: 'string', default: process.env.JOSTLE ?? '' },
        baked: { type: 'boolean', default: false },
      },
    });
    const count = values.frames === 'all' ? Infinity : Number(values.frames);
    if (!(count >= 3) || (count !== Infinity && !Number.isInteger(count))) wrongUse('--frames takes a number from 3 on, or "all"');
    if (values.baked && positionals.length !== 2) wrongUse('--baked takes a result and its samples');
    return { ...values, count, files: positionals, solveOptions: split < 0 ? [] : argv.slice(split + 1) };
  } catch (error) {
    return wrongUse(error.message);
  }
}

/// The Lottie files that come with the repository.
function ownFiles() {
  return ['examples', 'tests/data/lottie'].map((folder) => path.join(repository, folder))
    .filter((folder) => fs.existsSync(folder))
    .flatMap(lottieFilesOf);
}

/// Runs the solve. Gives the paths written, or why there are none.
function bake(program, file, solveOptions, folder) {
  const result = path.join(folder, `baked${path.extname(file)}`);
  const samples = path.join(folder, 'samples.json');
  const run = spawnSync(program, ['solve', file, '-o', result, '--samples', samples, ...solveOptions], { encoding: 'utf8' });
  if (run.error) return { problem: run.error.message };
  if (run.status !== 0) {
    return { problem: `jostle solve ended with ${run.status ?? run.signal}: ${run.stderr.trim().split('\n').at(-1)}` };
  }
  return { result, samples };
}

async function checkOne(browser, options, name, resultFile, samplesFile, imageFolder) {
  const samples = JSON.parse(fs.readFileSync(samplesFile, 'utf8'));
  if (samples.layers.length === 0) return { name, verdict: 'no bodies' };
  const document = readLottie(resultFile, imageFolder);
  const frames = chosenFrames(samples.start, samples.end, options.count);
  const { report, outlines } = await compareBaked(browser, document, samples, frames);
  // All frames of a long file make no readable picture.
  const shown = chosenFrames(0, frames.length - 1, Math.min(frames.length, 6));
  const picture = path.join(options.out, `${name.replace(/\.(json|lottie)$/, '')}.png`);
  let remark = '';
  try {
    await drawOverview(browser, document, shown.map((i) => frames[i]), shown.map((i) => outlines[i]), picture);
  } catch (error) {
    remark = `no overview: ${error.message.split('\n')[0]}`;
  }
  return { name, report, remark, verdict: report.good ? 'ok' : 'DIFFERS' };
}

async function checkFile(browser, options, file, isOwn) {
  const name = path.basename(file);
  const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'check_players-'));
  try {
    const baked = bake(options.program, file, options.solveOptions, folder);
    // Among the repository's own files are some that are meant to be refused.
    if (baked.problem) return { name, verdict: isOwn ? 'not baked' : 'FAILED', remark: baked.problem };
    return await checkOne(browser, options, name, baked.result, baked.samples, path.dirname(path.resolve(file)));
  } catch (error) {
    return { name, verdict: 'FAILED', remark: error.message.split('\n')[0] };
  } finally {
    fs.rmSync(folder, { recursive: true, force: true });
  }
}

function tableRow({ name, report, verdict }) {
  if (!report) return [name, ...Array(11).fill(''), verdict];
  const { matrices: m, thinning: t, pictures: p } = report;
  const picture = (text) => (p.compared > 0 ? text : '-');
  return [name, report.layers, report.frames, m.px.value.toFixed(4), m.degrees.value.toFixed(4), m.scale.value.toFixed(5),
    t.px.value.toFixed(4), t.degrees.value.toFixed(4), p.compared, p.offScreen, picture(p.centroid.value.toFixed(3)),
    picture(`${(p.area.value * 100).toFixed(2)} %`), verdict];
}

function printTable(results) {
  const head = ['file', 'layers', 'frames', 'px', 'degrees', 'scale', 'thinned px', 'thinned deg', 'pictures', 'off screen', 'centroid px', 'area', 'verdict'];
  printRows([head, ...results.map(tableRow)]);
  for (const { name, report, remark } of results) {
    for (const failure of report?.failures.values() ?? []) console.log(`${name}: ${failure.text}`);
    if (remark) console.log(`${name}: ${remark}`);
  }
}

async function main() {
  const options = readOptions(process.argv.slice(2));
  const isOwn = options.files.length === 0;
  if (!options.baked) {
    options.program ||= findProgram();
    if (!options.program || !fs.existsSync(options.program)) wrongUse('no jostle in build/release; build it, or name it with --program');
    if (isOwn) options.files = ownFiles();
    if (options.files.length === 0) wrongUse('the repository has no files of its own yet; name some');
  }
  const missing = options.files.find((file) => !fs.existsSync(file));
  if (missing) wrongUse(`no file ${missing}`);
  fs.mkdirSync(options.out, { recursive: true });

  const results = [];
  const browser = await startBrowser(process.env.CHROMIUM);
  try {
    if (options.baked) {
      const [result, samples] = options.files;
      results.push(await checkOne(browser, options, path.basename(result), result, samples, path.dirname(path.resolve(result))));
    } else {
      for (const file of options.files) results.push(await checkFile(browser, options, file, isOwn));
    }
  } finally {
    await browser.close();
  }
  printTable(results);
  const bad = results.filter((r) => r.verdict === 'DIFFERS' || r.verdict === 'FAILED').length;
  const compared = results.filter((r) => r.report).length;
  console.log(`${compared} compared, ${bad} bad; pictures in ${path.relative(process.cwd(), options.out) || '.'}`);
  // Nothing compared proves nothing.
  process.exitCode = bad > 0 || compared === 0 ? 1 : 0;
}

await main();
