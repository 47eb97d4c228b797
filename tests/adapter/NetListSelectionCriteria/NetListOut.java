package NetListSelectionCriteria;

import java.util.HashSet;
import java.util.Set;

public final class NetListOut {
    private final Set<String> fields = new HashSet<>();
    private final Set<String> fieldsWithOld = new HashSet<>();

    public void addFieldNameWithoutOld(String field) {
        fields.add(field);
    }

    public void addFieldNameWithOld(String field) {
        fields.add(field);
        fieldsWithOld.add(field);
    }

    public boolean wants(String field) {
        return fields.contains(field);
    }

    public boolean wantsOld(String field) {
        return fieldsWithOld.contains(field);
    }
}
