package NetListSelectionCriteria;

/** A range over one key field. A numeric key's bounds come as numbers, now and then one of them as a text. */
public final class NetListParameter {
    private String fieldName;
    private Object from;
    private Object to;

    public void setFieldName(String fieldName) {
        this.fieldName = fieldName;
    }

    public void setFrom(String from) {
        this.from = from;
    }

    public void setFrom(int from) {
        this.from = from;
    }

    public void setTo(String to) {
        this.to = to;
    }

    public void setTo(int to) {
        this.to = to;
    }

    public String fieldName() {
        return fieldName;
    }

    public Object from() {
        return from;
    }

    public Object to() {
        return to;
    }
}
