package ZenqayInstHandler;

import java.io.FileWriter;
import java.io.IOException;
import java.io.Writer;
import java.text.SimpleDateFormat;
import java.util.Date;
import java.util.Locale;

/** Appends what it is told to the file that the property status.file names. */
public final class Status {
    private final int instance;

    Status(int instance) {
        this.instance = instance;
    }

    public void writeToMessageBox(Date time, String text) throws IOException {
        append("message " + new SimpleDateFormat("h:mm:ss a", Locale.US).format(time) + " " + text);
    }

    public void WriteToAlertBox(String time, String text) throws IOException {
        append("alert " + time + " " + text);
    }

    public void UpdateSyncStatus(int table, int status) throws IOException {
        append("sync " + table + " " + status);
    }

    public void UpdateStatusByTable(int handle, int table, int status, String detail) throws IOException {
        append("table " + handle + " " + table + " " + status + " <" + detail + ">");
    }

    private void append(String line) throws IOException {
        try (Writer file = new FileWriter(System.getProperty("status.file"), true)) {
            file.write(instance + " " + line + "\n");
        }
    }
}
