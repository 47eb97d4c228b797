package NetListSelectionCriteria;

import java.util.Date;

public final class NetListPeriod {
    private Date from;
    private Date to;

    public void setFrom(Date from) {
        this.from = from;
    }

    public void setTo(Date to) {
        this.to = to;
    }

    public Date from() {
        return from;
    }

    public Date to() {
        return to;
    }
}
