// The record as a program in another language reads it, by an FFI package alone.
//
//   node station.js KVCSTAT64.DLL LAYOUT.JSON RECORD.JSON
//
// LAYOUT.JSON is what `kvstation layout --json` prints, RECORD.JSON what `kvstation show --json` printed just before.
"use strict";

const assert = require("assert");
const fs = require("fs");
const path = require("path");
const koffi = require("koffi");

const CHANGING_FIELDS = ["szFixedDrives", "dwCurrentMhz"];  // the percentage that is free, the clock

function readJson(file) {
  return JSON.parse(fs.readFileSync(file, "utf8"));
}

function memberType(field) {
  return field.type.startsWith("char[") ? koffi.array("char", field.width, "String") : field.type;
}

// The record as koffi lays it out. Areas between the fields are members too, or it would close them.
function describeRecord(layout) {
  const members = {};
  let end = 0;
  for (const field of layout) {
    if (field.offset > end)
      members[`reserved${end}`] = koffi.array("uint8_t", field.offset - end);
    members[field.name] = memberType(field);
    end = field.offset + field.width;
  }
  return koffi.struct("STATIONDATA", members);
}

// Windows looks for the companion libraries in the folders of PATH.
function loadLibrary(file) {
  process.env.PATH = `${path.dirname(file)};${process.env.PATH}`;
  return koffi.load(file);
}

function readStation(file, recordType) {
  const getStationData = loadLibrary(file).func("GetStationData", "void", ["void *"]);
  const record = Buffer.alloc(koffi.sizeof(recordType));
  getStationData(record);
  return koffi.decode(record, recordType);
}

const [libraryFile, layoutFile, recordFile] = process.argv.slice(2);
const layout = readJson(layoutFile);
const expected = readJson(recordFile);

const recordType = describeRecord(layout);
const last = layout[layout.length - 1];
assert.ok(koffi.sizeof(recordType) >= last.offset + last.width, "the record is too short");
for (const field of layout)
  assert.strictEqual(koffi.offsetof(recordType, field.name), field.offset, `offset of ${field.name}`);

const station = readStation(libraryFile, recordType);
assert.notStrictEqual(station.szStation, "", "the station has no name");
const compared = layout.map((field) => field.name).filter((name) => !CHANGING_FIELDS.includes(name));
for (const name of compared)
  assert.strictEqual(station[name], expected[name], name);
console.log(`szStation: ${station.szStation}`);
console.log(`${compared.length} fields are those that kvstation shows`);
