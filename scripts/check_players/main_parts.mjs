// What the scripts of this folder share: finding the program and files, printing tables.
import fs from 'node:fs';
import path from 'node:path';
import { fileURLToPath } from 'node:url';

export const repository = path.resolve(path.dirname(fileURLToPath(import.meta.url)), '../..');

/// The built program, '' if there is none.
export function findProgram() {
  const build = path.join(repository, 'build/release');
  if (!fs.existsSync(build)) return '';
  const found = fs.readdirSync(build, { recursive: true, withFileTypes: true })
    .filter((entry) => entry.isFile() && entry.name === 'jostle')
    .map((entry) => path.join(entry.parentPath ?? entry.path, entry.name));
  return found[0] ?? '';
}

/// The file itself, or the Lottie files in a folder and those below it, sorted.
export function lottieFilesOf(name) {
  if (!fs.statSync(name).isDirectory()) return [name];
  return fs.readdirSync(name, { recursive: true }).map((inner) => path.join(name, inner))
    .filter((file) => /\.(json|lottie)$/.test(file) && fs.statSync(file).isFile())
    .sort();
}

/// Prints rows in columns; the first and the last column stand to the left.
export function printRows(rows) {
  const texts = rows.map((row) => row.map(String));
  const widths = texts[0].map((_, c) => Math.max(...texts.map((row) => row[c].length)));
  const leftAligned = (c) => c === 0 || c === widths.length - 1;
  for (const row of texts) {
    console.log(row.map((cell, c) => (leftAligned(c) ? cell.padEnd(widths[c]) : cell.padStart(widths[c]))).join('  ').trimEnd());
  }
}
