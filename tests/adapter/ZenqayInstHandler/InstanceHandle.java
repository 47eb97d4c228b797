package ZenqayInstHandler;

/** The class that a job creates; it hands out the status object. */
public final class InstanceHandle {
    public int CurrentInstanceNumber;

    public Status getInstance(int number) {
        return new Status(number);
    }
}
