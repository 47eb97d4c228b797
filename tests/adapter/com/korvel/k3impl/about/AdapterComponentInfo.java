package com.korvel.k3impl.about;

public final class AdapterComponentInfo {
    public String getVersion() {
        return "2.4";
    }
}
