package export;

import java.util.HashMap;
import java.util.Map;

/** One record's fields by name. A field that is there may be null. */
public final class Fields {
    private final Map<String, Object> values = new HashMap<>();

    public boolean has(String name) {
        return values.containsKey(name);
    }

    public String text(String name) {
        return (String) values.get(name);
    }

    public Integer number(String name) {
        return (Integer) values.get(name);
    }

    public void set(String name, Object value) {
        values.put(name, value);
    }

    public boolean isEmpty() {
        return values.isEmpty();
    }
}
