package export;

import NetListSelectionCriteria.NetListParameter;
import NetListSelectionCriteria.NetListSelectionCriteria;
import java.io.IOException;
import java.io.UncheckedIOException;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.Paths;
import java.time.Instant;
import java.util.ArrayList;
import java.util.Iterator;
import java.util.List;
import java.util.NoSuchElementException;
import java.util.function.BiFunction;
import java.util.function.Predicate;

/**
 * A CSV export of one entity. An unquoted empty cell is an absent field. Rows are read as they are asked for; the
 * directory is named by the system property "adapter.exports".
 */
public final class Export<Row> implements Iterator<Row> {
    private final Iterator<String> lines;
    private final List<Column> columns = new ArrayList<>();
    private final BiFunction<Fields, Fields, Row> make;
    private Predicate<List<String>> isWanted = cells -> true;
    private Predicate<Column> isAnswered = column -> true;
    private Row next;

    /** `make` gets a record's fields and its old values. */
    public Export(String file, BiFunction<Fields, Fields, Row> make) {
        this.make = make;
        try {
            Path path = Paths.get(System.getProperty("adapter.exports"), file);
            lines = Files.lines(path, StandardCharsets.UTF_8).iterator();
        } catch (IOException fault) {
            throw new UncheckedIOException("cannot read " + file, fault);
        }
        for (String cell : cellsOf(lines.next())) columns.add(new Column(cell));
        for (Column old : columns) {
            if (old.isOld) old.follow(columnNamed(old.name));
        }
    }

    /** Keeps the rows whose keys lie in the ranges: a lowest and a highest value for each key, in their order. */
    public Export<Row> within(Object... bounds) {
        int key = 0;
        for (int at = 0; at < columns.size(); at++) {
            if (!columns.get(at).isKey) continue;
            keep(at, bounds[key * 2], bounds[key * 2 + 1]);
            key++;
        }
        return this;
    }

    /** Keeps what the criteria ask for. */
    public Export<Row> changedWithin(NetListSelectionCriteria criteria) {
        long from = criteria.period().from().getTime() / 1000;
        long to = criteria.period().to().getTime() / 1000;
        isWanted = cells -> {
            long changedAt = Instant.parse(cells.get(0)).getEpochSecond();
            return changedAt >= from && changedAt <= to;
        };
        for (NetListParameter range : criteria.input().parameters()) {
            for (int at = 0; at < columns.size(); at++) {
                Column column = columns.get(at);
                if (column.isKey && column.code.equals(range.fieldName())) keep(at, range.from(), range.to());
            }
        }
        isAnswered = column -> column.code.isEmpty() || column.isKey
                || (column.isOld ? criteria.output().wantsOld(column.code) : criteria.output().wants(column.code));
        return this;
    }

    @Override
    public boolean hasNext() {
        while (next == null && lines.hasNext()) {
            List<String> cells = cellsOf(lines.next());
            if (isWanted.test(cells)) next = rowOf(cells);
        }
        return next != null;
    }

    @Override
    public Row next() {
        if (!hasNext()) throw new NoSuchElementException("there is no further row");
        Row row = next;
        next = null;
        return row;
    }

    private Row rowOf(List<String> cells) {
        Fields fields = new Fields();
        Fields old = new Fields();
        for (int at = 0; at < columns.size(); at++) {
            Column column = columns.get(at);
            if (cells.get(at) == null || !isAnswered.test(column)) continue;
            (column.isOld ? old : fields).set(column.name, column.valueOf(cells.get(at)));
        }
        return make.apply(fields, old);
    }

    private void keep(int at, Object low, Object high) {
        boolean isNumber = columns.get(at).isNumber;
        isWanted = isWanted.and(cells -> {
            String cell = cells.get(at) == null ? "" : cells.get(at);
            if (!isNumber) return cell.compareTo((String) low) >= 0 && isBelow(cell, (String) high);
            long number = cell.isEmpty() ? 0 : Long.parseLong(cell);
            return number >= Long.parseLong(low.toString()) && number <= Long.parseLong(high.toString());
        });
    }

    /** Nothing is above the highest character that the ERP orders by. */
    private static boolean isBelow(String cell, String high) {
        boolean isUnlimited = !high.isEmpty() && high.chars().allMatch(unit -> unit == 0x7F);
        return isUnlimited || cell.compareTo(high) <= 0;
    }

    private Column columnNamed(String name) {
        for (Column column : columns) {
            if (column.name.equals(name) && !column.isOld) return column;
        }
        throw new NoSuchElementException("no column " + name);
    }

    /** The cells of a record on one line; null for one that is empty and not quoted. */
    private static List<String> cellsOf(String line) {
        List<String> cells = new ArrayList<>();
        StringBuilder cell = new StringBuilder();
        boolean inQuotes = false;
        boolean wasQuoted = false;
        for (int at = 0; at <= line.length(); at++) {
            char unit = at == line.length() ? ',' : line.charAt(at);
            if (unit == '"') {
                if (!inQuotes && wasQuoted) cell.append('"');
                inQuotes = !inQuotes;
                wasQuoted = true;
            } else if (unit == ',' && !inQuotes) {
                cells.add(cell.length() == 0 && !wasQuoted ? null : cell.toString());
                cell.setLength(0);
                wasQuoted = false;
            } else {
                cell.append(unit);
            }
        }
        return cells;
    }
}
