package NetListSelectionCriteria;

import java.util.ArrayList;
import java.util.List;

public final class NetListIn {
    private final List<NetListParameter> parameters = new ArrayList<>();

    public void addNetListParameter(NetListParameter parameter) {
        parameters.add(parameter);
    }

    public List<NetListParameter> parameters() {
        return parameters;
    }
}
