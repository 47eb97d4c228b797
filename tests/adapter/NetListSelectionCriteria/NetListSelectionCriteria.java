package NetListSelectionCriteria;

public final class NetListSelectionCriteria {
    private NetListPeriod period;
    private NetListIn input;
    private NetListOut output;

    public void setNetListPeriod(NetListPeriod period) {
        this.period = period;
    }

    public void setNetListIn(NetListIn input) {
        this.input = input;
    }

    public void setNetListOut(NetListOut output) {
        this.output = output;
    }

    public NetListPeriod period() {
        return period;
    }

    public NetListIn input() {
        return input;
    }

    public NetListOut output() {
        return output;
    }
}
