// The names, kinds and limits of every value, fetched once.

export type Kind = "flag" | "int" | "enum" | "float" | "text" | "mask" | "none";

export interface Entry {
  name: string;
  kind: Kind;
  words: [number, string][];
  minimum: number | null;
  maximum: number | null;
}

export interface Table {
  name: string;
  rows: number;
  fields: [string, Kind, number][];
}

interface Raw {
  values: [string, Kind, number, number | null, number | null][];
  tables: [string, number, [string, Kind, number][]][];
  enums: [number, string][][];
}

export class Catalogue {
  private entries: Entry[] = [];
  private tables: Table[] = [];
  private enums: [number, string][][] = [];

  async load(): Promise<void> {
    const raw = (await (await fetch("/catalogue.json")).json()) as Raw;
    this.enums = raw.enums;
    this.entries = raw.values.map(([name, kind, type, minimum, maximum]) => ({ name, kind, words: this.wordsOf(type), minimum, maximum }));
    this.tables = raw.tables.map(([name, rows, fields]) => ({ name, rows, fields }));
  }

  private wordsOf(type: number): [number, string][] {
    return type >= 0 ? this.enums[type] ?? [] : [];
  }

  /** A value, or a cell of a table: "NAME[row].Field". */
  find(name: string): Entry | undefined {
    const cell = /^(\w+)\[(\d+)\]\.(\w+)$/.exec(name);
    if (!cell) return this.entries.find((entry) => entry.name === name);
    return this.cells(cell[1] ?? "", Number(cell[2])).find((entry) => entry.name === name);
  }

  private cells(table: string, row: number): Entry[] {
    const found = this.tables.find((one) => one.name.toLowerCase() === table.toLowerCase());
    if (!found || row >= found.rows) return [];
    return found.fields.map(([field, kind, type]) => ({
      name: `${found.name}[${row}].${field}`,
      kind,
      words: this.wordsOf(type),
      minimum: null,
      maximum: null,
    }));
  }

  /** Every word of `text` is in the name. A table's cells come once a row is named: "VarLensList[2]". */
  search(text: string): { entries: Entry[]; tables: Table[] } {
    const row = /^(\w+)\[(\d+)\]?\.?(\w*)$/.exec(text.trim());
    if (row) {
      const part = (row[3] ?? "").toLowerCase();
      const entries = this.cells(row[1] ?? "", Number(row[2])).filter((entry) => entry.name.split(".")[1]?.toLowerCase().includes(part));
      return { entries, tables: [] };
    }
    const parts = text.toLowerCase().split(/\s+/).filter(Boolean);
    const fits = (one: { name: string }): boolean => parts.every((part) => one.name.toLowerCase().includes(part));
    return { entries: this.entries.filter(fits), tables: this.tables.filter(fits) };
  }
}
