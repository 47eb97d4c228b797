package com.korvel.k3.kxi1;

public final class AccessForCom {
    public Toolkit kxiToolKit_getDefaultToolkit() {
        return new Toolkit();
    }
}
