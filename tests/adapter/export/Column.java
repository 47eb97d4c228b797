package export;

/** A header cell: Name[:type[:code[:key]]], "Old." in front of the name of an old value. */
final class Column {
    final String name;
    final boolean isKey;
    final boolean isOld;
    boolean isNumber;
    String code;

    Column(String cell) {
        String[] parts = cell.split(":", -1);
        isOld = parts[0].startsWith("Old.");
        name = isOld ? parts[0].substring("Old.".length()) : parts[0];
        isNumber = parts.length > 1 && parts[1].equals("int");
        code = parts.length > 2 ? parts[2] : "";
        isKey = parts.length > 3;
    }

    /** An old value is of its field's type, and goes by its code. */
    void follow(Column field) {
        isNumber = field.isNumber;
        code = field.code;
    }

    Object valueOf(String cell) {
        if (cell.equals("\\N")) return null;
        return isNumber && !cell.isEmpty() ? Integer.valueOf(cell) : cell;
    }
}
