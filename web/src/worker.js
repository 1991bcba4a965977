// The program in a thread of its own, where it may take its time. Each command gets a fresh memory;
// the files go from one to the next.

import createTessel from "tessel-program";

const FOLDER = "/work";

function makeFolders(fs, path) {
  const parts = path.split("/").slice(1, -1);
  parts.reduce((folder, part) => {
    const next = `${folder}/${part}`;
    if (!fs.analyzePath(next).exists) fs.mkdir(next);
    return next;
  }, "");
}

function writeFiles(fs, files) {
  for (const [name, bytes] of files) {
    makeFolders(fs, `${FOLDER}/${name}`);
    fs.writeFile(`${FOLDER}/${name}`, bytes);
  }
}

function readFiles(fs, folder = FOLDER) {
  const files = new Map();
  for (const name of fs.readdir(folder)) {
    if (name === "." || name === "..") continue;
    const path = `${folder}/${name}`;
    if (fs.isDir(fs.stat(path).mode)) {
      for (const entry of readFiles(fs, path)) files.set(...entry);
    } else {
      files.set(path.slice(FOLDER.length + 1), fs.readFile(path));
    }
  }
  return files;
}

function tellError(line, messages) {
  const progress = /^progress (\S+) (\S+)$/.exec(line);
  if (progress) {
    self.postMessage({ progress: { share: Number(progress[1]), seconds: Number(progress[2]) } });
  } else {
    messages.push(line);
  }
}

async function runCommand(wasm, command, files) {
  const screen = [];
  const messages = [];
  const program = await createTessel({
    locateFile: (name) => name,
    instantiateWasm(imports, receive) {
      // A module that was compiled before comes alone, bytes with an instance.
      WebAssembly.instantiate(wasm, imports).then((made) => receive(made.instance ?? made));
      return {};
    },
    print: (line) => screen.push(line),
    printErr: (line) => tellError(line, messages),
  });
  program.FS.mkdir(FOLDER);
  program.FS.chdir(FOLDER);
  writeFiles(program.FS, files);
  const status = program.callMain(command);
  return { status, screen, messages, files: readFiles(program.FS) };
}

async function runAll({ wasm, commands, files }) {
  const results = [];
  let left = files;
  for (const command of commands) {
    const result = await runCommand(wasm, command, left);
    results.push(result);
    left = result.files;
    if (result.status !== 0) break;
  }
  return results;
}

self.onmessage = async ({ data }) => {
  try {
    self.postMessage({ results: await runAll(data) });
  } catch (error) {
    self.postMessage({ failure: String(error.message ?? error) });
  }
};
